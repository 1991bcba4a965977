// The first step: files become tables, the program tells what it understood.

import { readTable, readObjects, shortNumber } from "./csv.js";
import { fill, h, scrollingTable } from "./dom.js";
import { EXAMPLES } from "./examples.js";
import { commandForm } from "./form.js";
import { startRun } from "./program.js";
import { TABLES, assignFiles } from "./tables_in.js";

const SESSION = "session";
const DATA_FOLDER = "data";
const PREVIEWED = [
  ["traits", "Traits"],
  ["communities", "Communities"],
  ["environment", "Environment"],
];
const ROWS_SHOWN = 6;
const COLUMNS_SHOWN = 14;

const decoder = new TextDecoder();

const readFile = async (file) => ({
  name: file.name,
  bytes: new Uint8Array(await file.arrayBuffer()),
});

function importArguments(tables, session, more) {
  const files = [...tables].flatMap(([option, { name }]) => [`--${option}`, name]);
  return ["import", ...files, "--session", session, "--force", ...more];
}

const filesOf = (tables) => new Map([...tables.values()].map(({ name, bytes }) => [name, bytes]));

/** The program's summary: lines, and under a line those that it indents. */
function summaryElements(lines) {
  const parts = [];
  for (const line of lines) {
    if (!line.startsWith(" ")) {
      parts.push(h("p", {}, line));
    } else {
      if (parts.at(-1)?.tagName !== "UL") parts.push(h("ul", {}));
      parts.at(-1).append(h("li", {}, line.trim()));
    }
  }
  return parts;
}

function preview(name, title, text, kinds) {
  const { header, rows } = readTable(text);
  const cut = (row) => [
    ...row.slice(0, COLUMNS_SHOWN),
    ...(row.length > COLUMNS_SHOWN ? ["…"] : []),
  ];
  const kindOf = (column) =>
    kinds.find((kind) => kind.table === name && kind.name === column)?.kind ?? "";
  const label = (column) => (kindOf(column) ? `${column} (${kindOf(column)})` : column);
  const shown = rows.slice(0, ROWS_SHOWN).map(([row, ...cells]) => [row, ...cells.map(cellText)]);
  return scrollingTable({
    caption: `${title}: ${Math.min(ROWS_SHOWN, rows.length)} of ${rows.length} rows, ${header.length - 1} columns`,
    header: cut(header).map((column, k) => (k === 0 ? column : label(column))),
    rows: shown.map(cut),
  });
}

function cellText(cell) {
  return cell !== "" && Number.isFinite(Number(cell)) ? shortNumber(cell) : cell;
}

/** What the program's tables of the data tell the other steps. */
function understood(files, session) {
  const text = (name) => {
    const bytes = files.get(`${DATA_FOLDER}/${name}.csv`);
    return bytes === undefined ? null : decoder.decode(bytes);
  };
  const environment = text("environment");
  return {
    session,
    files: new Map([...files].filter(([name]) => !name.startsWith(`${DATA_FOLDER}/`))),
    kinds: readObjects(text("variables")),
    traits: readTable(text("traits")).header.slice(1),
    environment: environment === null ? null : readObjects(environment),
    hasPhylogeny: text("phylogeny") !== null,
    previews: PREVIEWED.filter(([name]) => text(name) !== null).map(([name, title]) =>
      preview(name, title, text(name), readObjects(text("variables"))),
    ),
  };
}

/**
 * Fills `root`. `onData` is told what was imported, or null when the tables changed and nothing is.
 */
export function dataView(root, description, onData) {
  let tables = new Map();
  let session = SESSION;
  let turn = 0; // of the import that counts; older ones are out of date
  const command = description.commands.find(({ name }) => name === "import");
  const status = h("div", { "aria-live": "polite" });
  const cards = h("div", { class: "cards" });
  const form = commandForm(command, {
    first: [],
    without: [...TABLES.map(({ option }) => option), "session", "force"],
    context: { names: {}, meanings: {}, offered: [], addFile: () => {} },
    more: "How the tables are read",
  });
  form.element.addEventListener("change", () => update());

  function card({ option, title, needed }) {
    const file = tables.get(option);
    const id = `file-${option}`;
    const input = h("input", {
      type: "file",
      id,
      hidden: true,
      onchange: async () => {
        tables.set(option, await readFile(input.files[0]));
        update();
      },
    });
    const { help } = command.options.find(({ name }) => name === option);
    return h(
      "div",
      { class: `card ${file ? "full" : ""}`, id: `card-${option}` },
      h("h3", {}, title, h("span", { class: "help" }, needed ? " (needed)" : " (optional)")),
      h("p", { class: file ? "file-name" : "help" }, file ? file.name : help.split(";")[0]),
      h(
        "div",
        { class: "row" },
        input,
        h(
          "button",
          {
            class: "small",
            type: "button",
            "aria-label": `${file ? "Change" : "Choose a file"}: ${title}`,
            onclick: () => input.click(),
          },
          file ? "Change" : "Choose a file",
        ),
        file
          ? h(
              "button",
              {
                class: "small",
                type: "button",
                "aria-label": `Remove ${file.name}`,
                onclick: () => {
                  tables.delete(option);
                  update();
                },
              },
              "Remove",
            )
          : null,
      ),
    );
  }

  /** The failure stands beside the table that it names first, or under all of them. */
  function showFailure(failure) {
    const placeOf = ([, { name }]) => failure.indexOf(name);
    const [named] = [...tables]
      .filter((table) => placeOf(table) >= 0)
      .sort((one, other) => placeOf(one) - placeOf(other));
    const alert = h("div", { class: "alert", role: "alert" }, failure);
    form.reveal(failure);
    if (named) {
      const place = cards.querySelector(`#card-${named[0]}`);
      place.classList.add("bad");
      place.append(alert);
      fill(status);
    } else {
      fill(status, alert);
    }
  }

  function showData(data, outcome) {
    const warnings = outcome.warnings.map((text) => h("div", { class: "warning" }, text));
    fill(
      status,
      h("div", { class: "understood" }, summaryElements(outcome.screen[0])),
      warnings,
      h("details", {}, h("summary", {}, "First rows, as they were understood"), data.previews),
    );
  }

  async function update() {
    const mine = ++turn;
    fill(cards, TABLES.map(card));
    onData(null);
    if (!TABLES.every(({ option, needed }) => !needed || tables.has(option))) {
      const lacking = TABLES.filter(({ option, needed }) => needed && !tables.has(option));
      const names = lacking.map(({ title }) => title.toLowerCase()).join(" and ");
      fill(status, tables.size > 0 ? h("p", {}, `The table of ${names} is still to come.`) : null);
      return;
    }
    fill(status, h("p", {}, "Reading …"));
    const commands = [
      importArguments(tables, session, form.read()),
      ["check", session, "--quiet", "--tables", DATA_FOLDER],
    ];
    try {
      const outcome = await startRun(commands, filesOf(tables)).outcome;
      if (mine !== turn) return;
      if (outcome.status !== 0) {
        showFailure(outcome.failure);
        return;
      }
      const data = understood(outcome.files, session);
      showData(data, outcome);
      onData(data);
    } catch (error) {
      if (mine === turn) showFailure(error.message);
    }
  }

  async function tryImport(candidate) {
    const commands = [importArguments(candidate, SESSION, [])];
    try {
      return (await startRun(commands, filesOf(candidate)).outcome).status === 0;
    } catch {
      return false;
    }
  }

  async function take(list) {
    const files = await Promise.all([...list].map(readFile));
    if (files.length === 0) return;
    fill(status, h("p", {}, "Reading …"));
    session = SESSION;
    tables = await assignFiles(files, tables, tryImport);
    update();
  }

  const chooser = h("input", {
    type: "file",
    multiple: true,
    hidden: true,
    id: "all-files",
    onchange: () => take(chooser.files),
  });
  const drop = h(
    "div",
    { class: "drop" },
    h("p", {}, "Drop your tables here: CSV files of traits, communities and environment, a tree."),
    chooser,
    h("button", { type: "button", onclick: () => chooser.click() }, "Choose files"),
  );
  // Files that miss the field would open in the place of the page.
  for (const event of ["dragover", "drop"]) {
    document.addEventListener(event, (e) => e.preventDefault());
  }
  root.addEventListener("dragover", () => drop.classList.add("over"));
  root.addEventListener("dragleave", () => drop.classList.remove("over"));
  root.addEventListener("drop", (event) => {
    drop.classList.remove("over");
    take(event.dataTransfer.files);
  });

  fill(
    root,
    h("p", {}, "New here? Take one of two published data sets:"),
    h(
      "div",
      { class: "row" },
      EXAMPLES.map((example) =>
        h(
          "button",
          {
            type: "button",
            title: example.about,
            onclick: () => {
              ({ session } = example);
              tables = new Map(example.files());
              update();
            },
          },
          example.title,
        ),
      ),
    ),
    drop,
    cards,
    form.element,
    status,
  );
  update();
}
