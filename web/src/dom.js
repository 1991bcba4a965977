// Elements in one expression.

/** An element with properties (`class`, `on...` handlers, attributes) and children. */
export function h(tag, properties = {}, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(properties)) {
    if (value === null || value === undefined || value === false) continue;
    if (name.startsWith("on")) element.addEventListener(name.slice(2), value);
    else if (name === "value") element.value = value;
    else element.setAttribute(name, value === true ? "" : value);
  }
  element.append(...children.flat().filter((child) => child !== null && child !== undefined));
  return element;
}

/**
 * A table of texts that scrolls by itself and that the keyboard reaches. Its roles are told: styles
 * may lay it out otherwise.
 */
export function scrollingTable({ caption, header, rows, rowHeaders = true }) {
  return h(
    "div",
    { class: "scroll", tabindex: "0", role: "region", "aria-label": caption },
    h(
      "table",
      { role: "table" },
      h("caption", {}, caption),
      h(
        "thead",
        { role: "rowgroup" },
        h(
          "tr",
          { role: "row" },
          ...header.map((text) => h("th", { scope: "col", role: "columnheader" }, text)),
        ),
      ),
      h(
        "tbody",
        { role: "rowgroup" },
        ...rows.map((row) =>
          h(
            "tr",
            { role: "row" },
            ...row.map((cell, k) =>
              rowHeaders && k === 0
                ? h("th", { scope: "row", role: "rowheader" }, cell)
                : h("td", { role: "cell", "data-column": header[k] }, cell),
            ),
          ),
        ),
      ),
    ),
  );
}

/** Puts `children` in the place of what an element holds. */
export function fill(element, ...children) {
  element.replaceChildren(...children.flat().filter((child) => child !== null));
}
