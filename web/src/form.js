// Forms of a command's options, made from what the program tells of them: no default, word or
// explanation stands here.

import { h } from "./dom.js";

const capitalised = (name) => {
  const words = name.replaceAll("-", " ");
  return words[0].toUpperCase() + words.slice(1);
};

const PLACES = ["FILE", "NUMBER"]; // for what the user fills in

/** "a|b|FILE" as words and places. */
function choicesOf(takes) {
  const parts = takes.split("|");
  const isPlace = (part) => PLACES.includes(part);
  return { words: parts.filter((part) => !isPlace(part)), places: parts.filter(isPlace) };
}

function fieldFrame(
  option,
  id,
  control,
  label = h("label", { for: id }, capitalised(option.name)),
) {
  return h(
    "div",
    { class: "field" },
    label,
    h("p", { class: "help", id: `${id}-help` }, option.help),
    control,
  );
}

function checkbox(option, id, { on, off, checked }) {
  const box = h("input", { type: "checkbox", id, "aria-describedby": `${id}-help`, checked });
  const label = h("label", { for: id }, box, ` ${capitalised(option.name)}`);
  const element = fieldFrame(option, id, null, label);
  return { element, read: () => (box.checked === checked ? [] : box.checked ? on : off) };
}

function textField(option, id, type) {
  const input = h("input", {
    type,
    id,
    "aria-describedby": `${id}-help`,
    value: option.default,
    step: type === "number" ? "any" : null,
    autocomplete: "off",
  });
  const read = () => {
    const value = input.value.trim();
    return value === option.default ? [] : [`--${option.name}`, value];
  };
  return { element: fieldFrame(option, id, input), read };
}

/** Words, and where the option takes more than words, a field or a file behind the last of them. */
function choice(option, id, { meanings, offered, addFile }) {
  const { words, places } = choicesOf(option.takes);
  const isFile = places.includes("FILE");
  const values = [...words, ...(isFile ? offered : [])];
  const titles = (value) => (meanings[value] ? `${value}: ${meanings[value]}` : value);
  const select = h(
    "select",
    { id, "aria-describedby": `${id}-help` },
    option.required ? h("option", { value: "" }, "please choose") : null,
    values.map((value) => h("option", { value }, titles(value))),
    places.map((place) =>
      h("option", { value: place }, place === "FILE" ? "from a file …" : "a number …"),
    ),
  );
  select.value = option.default;
  const more = h("input", {
    type: isFile ? "file" : "number",
    min: "0",
    "aria-label": `${capitalised(option.name)}: ${isFile ? "file" : "number"}`,
    hidden: true,
  });
  select.addEventListener("change", () => {
    more.hidden = !places.includes(select.value);
  });
  more.addEventListener("change", async () => {
    if (isFile) await addFile(more.files[0]);
  });
  const read = () => {
    let { value } = select;
    if (places.includes(value)) value = isFile ? (more.files[0]?.name ?? "") : more.value;
    return value === option.default ? [] : [`--${option.name}`, value];
  };
  return { element: fieldFrame(option, id, h("div", {}, select, more)), read };
}

/** A box for each of the names; all of them together are what the program does anyway. */
function nameBoxes(option, id, names) {
  const boxes = names.map((name) => h("input", { type: "checkbox", value: name, checked: true }));
  const group = h(
    "fieldset",
    { "aria-describedby": `${id}-help` },
    h("legend", { class: "hidden" }, capitalised(option.name)),
    h(
      "div",
      { class: "choices" },
      boxes.map((box, k) => h("label", {}, box, ` ${names[k]}`)),
    ),
  );
  const read = () => {
    const chosen = boxes.filter((box) => box.checked).map((box) => box.value);
    if (chosen.length === names.length) return [];
    // Each name for itself: a name may hold the comma that parts them.
    return chosen.flatMap((name) => [`--${option.name}`, name]);
  };
  const label = h("span", { class: "label" }, capitalised(option.name));
  return { element: fieldFrame(option, id, group, label), read };
}

function fieldOf(option, id, context) {
  if (option.flag) {
    return checkbox(option, id, { on: [`--${option.name}`], off: [], checked: false });
  }
  if (option.takes === "yes|no") {
    const checked = option.default === "yes";
    return checkbox(option, id, {
      on: [`--${option.name}`, "yes"],
      off: [`--${option.name}`, "no"],
      checked,
    });
  }
  if (option.list && context.names[option.name]) {
    return nameBoxes(option, id, context.names[option.name]);
  }
  if (option.takes.includes("|")) return choice(option, id, context);
  return textField(option, id, option.takes.startsWith("NUMBER") ? "number" : "text");
}

/**
 * The form of a command. `first` names the options that everybody looks at, the others stand
 * behind "More settings"; `without` those that the page settles. `context`: names (of list options'
 * items), meanings (of words), offered (files to choose from), addFile. `read` gives the arguments
 * that differ from the defaults; `reveal` unfolds the options that a message names.
 */
export function commandForm(command, { first, without, context, more = "More settings" }) {
  const options = command.options.filter(({ name, setting }) => setting && !without.includes(name));
  const fields = new Map(
    options.map((option) => [
      option.name,
      fieldOf(option, `${command.name}-${option.name}`, context),
    ]),
  );
  const ahead = first.filter((name) => fields.has(name));
  const behind = [...fields.keys()].filter((name) => !ahead.includes(name));
  const form = (names) =>
    h(
      "div",
      { class: "form" },
      names.map((name) => fields.get(name).element),
    );
  const element = h(
    "div",
    {},
    ahead.length > 0 ? form(ahead) : null,
    behind.length > 0 ? h("details", {}, h("summary", {}, more), form(behind)) : null,
  );
  return {
    element,
    read: () => [...fields.values()].flatMap((field) => field.read()),
    reveal: (message) => {
      for (const [, name] of message.matchAll(/--([a-z]+(?:-[a-z]+)*)/g)) {
        const folded = fields.get(name)?.element.closest("details");
        if (folded) folded.open = true;
      }
    },
  };
}
