import { byId, el } from "./dom";
import type { Notice } from "./protocol";

/** What tools say over the display. A person may put one aside; it comes back when it says something else. */
export class NoticeBoard {
  private readonly aside = new Map<string, string>();
  private notices: Notice[] = [];

  take(notices: Notice[]): void {
    this.notices = notices;
    this.show();
  }

  private show(): void {
    const shown = this.notices.filter((notice) => this.aside.get(notice.key) !== JSON.stringify(notice));
    byId("notices").replaceChildren(...shown.map((notice) => this.card(notice)));
  }

  private card(notice: Notice): HTMLElement {
    const close = el("button", { type: "button", class: "close", "aria-label": `Put aside: ${notice.title}` }, "Close");
    close.addEventListener("click", () => {
      this.aside.set(notice.key, JSON.stringify(notice));
      this.show();
    });
    const text = notice.text ? [el("pre", { tabindex: 0 }, notice.text)] : [];
    return el("article", { class: notice.problem ? "notice wrong" : "notice", "data-key": notice.key }, el("header", {}, el("strong", {}, notice.title), close), ...text);
  }
}
