// What all pictures share: their frame, their width, their file.

import { h } from "../dom.js";
import { save } from "../downloads.js";

// A picture that goes elsewhere is printed: it takes the colours of the light page.
const PRINTED = {
  "--text": "#1d2421",
  "--faint": "#56615c",
  "--accent": "#14694a",
  "--second": "#b4490f",
  "--bar": "#9db8ab",
  "--line": "#d5d9d4",
  "--card": "#ffffff",
};

/** The text of an SVG that stands for itself. */
export function svgText(svg) {
  const copy = svg.cloneNode(true);
  copy.setAttribute("xmlns", "http://www.w3.org/2000/svg");
  copy.setAttribute("color", PRINTED["--text"]);
  copy.setAttribute("style", "background:#ffffff");
  copy.querySelectorAll('[aria-label="tip"]').forEach((tip) => tip.remove());
  const text = new XMLSerializer().serializeToString(copy);
  return Object.entries(PRINTED).reduce(
    (t, [name, value]) => t.replaceAll(`var(${name})`, value),
    text,
  );
}

/**
 * A figure that `draw(width)` makes anew whenever its place changes its width. `label` says what a
 * reader who does not see it would miss, `name` the file that it is saved as. `redraw` follows
 * changed settings.
 */
export function figure({ name, label, caption, controls = [], draw }) {
  const place = h("div", {});
  let width = 0;
  const redraw = () => {
    if (width === 0) return;
    const svg = draw(width);
    svg.setAttribute("role", "img");
    svg.setAttribute("aria-label", label);
    // The label speaks for the picture; its parts would be read without their meaning.
    svg.querySelectorAll("g").forEach((part) => part.setAttribute("aria-hidden", "true"));
    place.replaceChildren(svg);
  };
  const element = h(
    "figure",
    { id: `figure-${name}` },
    controls.length > 0 ? h("div", { class: "row" }, controls) : null,
    place,
    h("figcaption", {}, caption),
    h(
      "button",
      {
        class: "small",
        type: "button",
        "aria-label": `Save the picture ${name}.svg`,
        onclick: () => save(`${name}.svg`, svgText(place.querySelector("svg")), "image/svg+xml"),
      },
      "SVG",
    ),
  );
  new ResizeObserver(([entry]) => {
    const seen = Math.floor(entry.contentRect.width);
    if (seen === width || seen === 0) return;
    width = seen;
    redraw();
  }).observe(place);
  return { element, redraw };
}

/** A labelled choice for a figure's controls. */
export function select(label, values, onchange) {
  return h(
    "label",
    { class: "row" },
    `${label} `,
    h(
      "select",
      { onchange: (event) => onchange(event.target.value) },
      values.map(([value, title]) => h("option", { value }, title)),
    ),
  );
}
