// The second step: the question, its settings, the run with its progress.

import { fill, h } from "./dom.js";
import { commandForm } from "./form.js";
import { startRun } from "./program.js";

const QUESTIONS = [
  {
    command: "analyse",
    title: "Which patterns follow the environment?",
    first: ["iterations", "congruence", "resemblance", "types", "belonging", "traits"],
  },
  {
    command: "rank",
    title: "Which traits express a pattern best?",
    first: ["criterion", "sizes", "test", "congruence", "resemblance", "traits"],
  },
];

// What the page settles: it always wants tables, in the folder that the program chooses, and a page
// computes on one core.
const SETTLED = ["session", "tables", "threads"];

function timeText(seconds) {
  if (seconds < 60) return `${seconds} s`;
  return `${Math.floor(seconds / 60)} min ${seconds % 60} s`;
}

/** Fills `root` for the imported `data`; `onResult` gets the command's name and its outcome. */
export function settingsView(root, description, data, onResult) {
  const files = new Map(data.files);
  const typesFile = `${data.session}Types.csv`;
  const context = {
    names: { traits: data.traits },
    meanings: description.meanings,
    offered: files.has(typesFile) ? [typesFile] : [],
    addFile: async (file) => files.set(file.name, new Uint8Array(await file.arrayBuffer())),
  };
  const forms = QUESTIONS.map(({ command, first }) => {
    const described = description.commands.find(({ name }) => name === command);
    return commandForm(described, { first, without: SETTLED, context });
  });
  const status = h("div", { "aria-live": "polite" });
  const place = h("div", {});
  const run = h("button", { class: "main", type: "submit" }, "Run");
  let chosen = 0;

  function choose(k) {
    chosen = k;
    fill(place, forms[k].element);
    fill(status);
  }

  function showProgress(cancel) {
    const bar = h("progress", { max: "1", "aria-label": "Progress of the run" });
    const left = h("span", { class: "help", "aria-live": "off" });
    fill(
      status,
      h(
        "div",
        { class: "row" },
        bar,
        left,
        h("button", { type: "button", id: "cancel", onclick: cancel }, "Cancel"),
      ),
    );
    return ({ share, seconds }) => {
      bar.value = share;
      left.textContent = `${Math.floor(100 * share)} %, ${timeText(seconds)} left`;
    };
  }

  async function start() {
    const { command } = QUESTIONS[chosen];
    const words = [command, data.session, "--force", "--progress-lines", ...forms[chosen].read()];
    let running = null;
    const onProgress = showProgress(() => {
      running.cancel();
      run.disabled = false;
      fill(status, h("p", {}, "Cancelled. Change what you like, and run again."));
      run.focus();
    });
    run.disabled = true;
    running = startRun([words], files, onProgress);
    try {
      const outcome = await running.outcome;
      if (outcome.status !== 0) throw new Error(outcome.failure);
      fill(status, h("p", {}, "Done."));
      onResult(command, outcome, data);
    } catch (error) {
      fill(status, h("div", { class: "alert", role: "alert" }, error.message));
    }
    run.disabled = false;
  }

  const tabs = h(
    "fieldset",
    {},
    h("legend", { class: "hidden" }, "Question"),
    h(
      "div",
      { class: "tabs" },
      QUESTIONS.map(({ title }, k) =>
        h(
          "label",
          {},
          h("input", {
            type: "radio",
            name: "question",
            checked: k === 0,
            onchange: () => choose(k),
          }),
          ` ${title}`,
        ),
      ),
    ),
  );
  fill(
    root,
    h(
      "form",
      {
        novalidate: true,
        onsubmit: (event) => {
          event.preventDefault();
          start();
        },
      },
      tabs,
      place,
      h("div", { class: "row" }, run),
    ),
    status,
  );
  choose(0);
}
