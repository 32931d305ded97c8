// SPDX-License-Identifier: GPL-2.0
/*
 * Counts the instructions that one program executes in user mode: the processor's own counter, read at each switch from
 * one task to another. For a board of one processor whose device tree does not tell the kernel of the counter.
 *
 * The parameter `program` names it; /sys/module/boardcount/parameters/instructions is the count.
 */
#include <linux/module.h>
#include <linux/sched.h>
#include <linux/string.h>
#include <linux/tracepoint.h>

#define EVENT_RETIRED 0x08
#define EXCLUDE_PRIVILEGED BIT(31)
#define COUNTER 0
#define ENABLE_ALL 0x1

static char program[TASK_COMM_LEN] = "gui";
module_param_string(program, program, sizeof(program), 0444);

static unsigned long long instructions;
module_param(instructions, ullong, 0444);
MODULE_PARM_DESC(instructions, "executed by the program, up to the last time that it was switched away from");

static struct tracepoint *switching;
static u32 last;

static u32 read_counter(void)
{
	u32 value;

	asm volatile("mcr p15, 0, %0, c9, c12, 5" : : "r"(COUNTER)); /* PMSELR */
	isb();
	asm volatile("mrc p15, 0, %0, c9, c13, 2" : "=r"(value)); /* PMXEVCNTR */
	return value;
}

static void start_counter(void)
{
	u32 control;

	asm volatile("mcr p15, 0, %0, c9, c12, 5" : : "r"(COUNTER));
	isb();
	asm volatile("mcr p15, 0, %0, c9, c13, 1" : : "r"(EVENT_RETIRED | EXCLUDE_PRIVILEGED)); /* PMXEVTYPER */
	asm volatile("mcr p15, 0, %0, c9, c12, 1" : : "r"(BIT(COUNTER))); /* PMCNTENSET */
	asm volatile("mrc p15, 0, %0, c9, c12, 0" : "=r"(control)); /* PMCR */
	asm volatile("mcr p15, 0, %0, c9, c12, 0" : : "r"(control | ENABLE_ALL));
	isb();
	last = read_counter();
}

/* Runs with interrupts off; differences of 32 bits hold as long as no task runs for 4 billion instructions. */
static void on_switch(void *data, bool preempt, struct task_struct *previous, struct task_struct *next,
		      unsigned int state)
{
	u32 now = read_counter();

	if (!strcmp(previous->comm, program))
		instructions += (u32)(now - last);
	last = now;
}

static void find_switching(struct tracepoint *point, void *data)
{
	if (!strcmp(point->name, "sched_switch"))
		switching = point;
}

static int __init boardcount_init(void)
{
	for_each_kernel_tracepoint(find_switching, NULL);
	if (!switching)
		return -ENOENT;
	start_counter();
	return tracepoint_probe_register(switching, on_switch, NULL);
}

static void __exit boardcount_exit(void)
{
	tracepoint_probe_unregister(switching, on_switch, NULL);
	tracepoint_synchronize_unregister();
}

module_init(boardcount_init);
module_exit(boardcount_exit);
MODULE_DESCRIPTION("Instructions of one program");
MODULE_LICENSE("GPL");
