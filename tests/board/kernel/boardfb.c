// SPDX-License-Identifier: GPL-2.0
/*
 * The board's display as the kernel shows it: a framebuffer in memory whose vertical blanks come at whole multiples
 * of a sixtieth of a second. Two buffers lie one above the other; a pan shows a buffer from the next blank on and returns
 * then.
 *
 * Parameters give it another size or depth, or leave the wait for the blank out, as a driver without it does. Counters
 * under /sys/module/boardfb/parameters say what the program before it has done.
 */
#include <linux/fb.h>
#include <linux/hrtimer.h>
#include <linux/math64.h>
#include <linux/module.h>
#include <linux/vmalloc.h>

#define BUFFERS 2
#define BLANKS_PER_SECOND 60

static unsigned int width = 240;
module_param(width, uint, 0444);
static unsigned int height = 400;
module_param(height, uint, 0444);
static unsigned int depth = 32;
module_param(depth, uint, 0444);
MODULE_PARM_DESC(depth, "bits a pixel: 16, 24 or 32");
static bool vsync = true;
module_param(vsync, bool, 0444);
MODULE_PARM_DESC(vsync, "whether the wait for the vertical blank is there");
static unsigned long pans;
module_param(pans, ulong, 0444);
static unsigned long waits;
module_param(waits, ulong, 0444);

static struct fb_info *display;
static u32 palette[16];

static int wait_for_blank(void)
{
	const u32 period = NSEC_PER_SEC / BLANKS_PER_SECOND;
	u64 passed = div_u64(ktime_get_ns(), period);
	ktime_t next = ns_to_ktime((passed + 1) * period);

	set_current_state(TASK_INTERRUPTIBLE);
	return schedule_hrtimeout(&next, HRTIMER_MODE_ABS);
}

static int boardfb_check_var(struct fb_var_screeninfo *var, struct fb_info *info)
{
	bool same = var->xres == width && var->yres == height && var->bits_per_pixel == depth;
	bool fits = var->xres_virtual == width && var->yres_virtual >= height && var->yres_virtual <= BUFFERS * height;

	return same && fits && var->yoffset <= var->yres_virtual - height ? 0 : -EINVAL;
}

static int boardfb_pan_display(struct fb_var_screeninfo *var, struct fb_info *info)
{
	int result = wait_for_blank();

	if (result == 0)
		pans++;
	return result;
}

static int boardfb_ioctl(struct fb_info *info, unsigned int command, unsigned long argument)
{
	if (command != FBIO_WAITFORVSYNC || !vsync)
		return -ENOTTY;
	waits++;
	return wait_for_blank();
}

static int boardfb_mmap(struct fb_info *info, struct vm_area_struct *area)
{
	return remap_vmalloc_range(area, info->screen_buffer, area->vm_pgoff);
}

static int boardfb_setcolreg(unsigned int number, unsigned int red, unsigned int green, unsigned int blue,
			     unsigned int alpha, struct fb_info *info)
{
	return 0;
}

static const struct fb_ops boardfb_ops = {
	.owner = THIS_MODULE,
	.fb_check_var = boardfb_check_var,
	.fb_pan_display = boardfb_pan_display,
	.fb_ioctl = boardfb_ioctl,
	.fb_mmap = boardfb_mmap,
	.fb_setcolreg = boardfb_setcolreg,
	.fb_read = fb_sys_read,
	.fb_write = fb_sys_write,
	.fb_fillrect = sys_fillrect,
	.fb_copyarea = sys_copyarea,
	.fb_imageblit = sys_imageblit,
};

static void describe(struct fb_info *info, u32 size)
{
	struct fb_var_screeninfo *var = &info->var;
	bool wide = depth >= 24;

	strscpy(info->fix.id, "boardfb", sizeof(info->fix.id));
	info->fix.smem_len = size;
	info->fix.type = FB_TYPE_PACKED_PIXELS;
	info->fix.visual = FB_VISUAL_TRUECOLOR;
	info->fix.ypanstep = 1;
	info->fix.line_length = width * depth / 8;
	info->fix.accel = FB_ACCEL_NONE;

	var->xres = width;
	var->yres = height;
	var->xres_virtual = width;
	var->yres_virtual = height;
	var->bits_per_pixel = depth;
	var->blue = (struct fb_bitfield){ .offset = 0, .length = wide ? 8 : 5 };
	var->green = (struct fb_bitfield){ .offset = wide ? 8 : 5, .length = wide ? 8 : 6 };
	var->red = (struct fb_bitfield){ .offset = wide ? 16 : 11, .length = wide ? 8 : 5 };
	var->transp = (struct fb_bitfield){ .offset = 24, .length = depth == 32 ? 8 : 0 };
	var->pixclock = div_u64(1000000000000ULL, width * height * BLANKS_PER_SECOND); /* picoseconds a pixel */
	var->vmode = FB_VMODE_NONINTERLACED;
}

static struct fb_info *allocate_display(u32 size)
{
	struct fb_info *info = framebuffer_alloc(0, NULL);

	if (!info)
		return NULL;
	info->screen_buffer = vmalloc_user(size);
	if (!info->screen_buffer) {
		framebuffer_release(info);
		return NULL;
	}
	info->screen_size = size;
	info->fbops = &boardfb_ops;
	info->flags = FBINFO_DEFAULT | FBINFO_VIRTFB;
	info->pseudo_palette = palette;
	describe(info, size);
	return info;
}

static void free_display(void)
{
	vfree(display->screen_buffer);
	framebuffer_release(display);
}

static int __init boardfb_init(void)
{
	int result;

	if (depth != 16 && depth != 24 && depth != 32)
		return -EINVAL;
	display = allocate_display(BUFFERS * width * height * depth / 8);
	if (!display)
		return -ENOMEM;
	result = register_framebuffer(display);
	if (result)
		free_display();
	return result;
}

static void __exit boardfb_exit(void)
{
	unregister_framebuffer(display);
	free_display();
}

module_init(boardfb_init);
module_exit(boardfb_exit);
MODULE_DESCRIPTION("A display in memory with a vertical blank");
MODULE_LICENSE("GPL");
