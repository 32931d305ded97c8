// The page is made of plain elements; these are the few words for it.

type Attributes = Record<string, string | number | boolean | ((event: never) => void)>;

function apply(element: Element, attributes: Attributes): void {
  for (const [name, value] of Object.entries(attributes)) {
    if (typeof value === "function") element.addEventListener(name, value as EventListener);
    else if (value === true) element.setAttribute(name, "");
    else if (value !== false) element.setAttribute(name, String(value));
  }
}

/** An element; a function among the attributes hears the event of that name. */
export function el<K extends keyof HTMLElementTagNameMap>(
  tag: K,
  attributes: Attributes = {},
  ...children: (Node | string)[]
): HTMLElementTagNameMap[K] {
  const element = document.createElement(tag);
  apply(element, attributes);
  element.append(...children);
  return element;
}

export function svg<K extends keyof SVGElementTagNameMap>(
  tag: K,
  attributes: Attributes = {},
  ...children: Node[]
): SVGElementTagNameMap[K] {
  const element = document.createElementNS("http://www.w3.org/2000/svg", tag);
  apply(element, attributes);
  element.append(...children);
  return element;
}

/** The element that index.html has under that id. */
export function byId(id: string): HTMLElement {
  const found = document.getElementById(id);
  if (!found) throw new Error(`The page has no #${id}.`);
  return found;
}

/** Compare first: a text that stays is not laid out again. */
export function setText(element: Element, text: string): void {
  if (element.textContent !== text) element.textContent = text;
}

/** "media-minutes" as a person reads it. */
export function words(name: string): string {
  const text = name.replace(/-/g, " ");
  return text.charAt(0).toUpperCase() + text.slice(1);
}

let turned = false;

/** The unit is held upside down, as in the left hand: what is seen above lies below on the unit. */
export function isTurned(): boolean {
  return turned;
}

export function turn(upsideDown: boolean): void {
  turned = upsideDown;
  document.body.classList.toggle("turned", upsideDown);
}

/** Runs `action` in the next frame, however often it is wanted until then. */
export function onceAFrame(action: () => void): () => void {
  let waiting = false;
  return () => {
    if (waiting) return;
    waiting = true;
    requestAnimationFrame(() => {
      waiting = false;
      action();
    });
  };
}
