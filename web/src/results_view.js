// The third step: what came out, as tables with a sentence each, pictures and files.

import { numberOf, readObjects, readTable, shortNumber } from "./csv.js";
import { fill, h, scrollingTable } from "./dom.js";
import { downloadButtons } from "./downloads.js";
import { diversityFigures } from "./figures/diversity.js";
import { nullFigure } from "./figures/null_values.js";
import { ordinationFigure } from "./figures/ordination.js";
import { rankingFigure } from "./figures/ranking.js";

const decoder = new TextDecoder();

/** "Report: " and "Tables: ", as the program tells them at its end. */
function told(screen, word) {
  return screen.findLast((line) => line.startsWith(`${word}: `)).slice(word.length + 2);
}

/** A statistic in a sentence, from the program's numbers alone. */
function sentence({ P, iterations, SES }) {
  const p = numberOf(P);
  if (!Number.isFinite(p)) return "It cannot be computed on these data.";
  const count = Math.round(p * Number(iterations));
  const effect = numberOf(SES);
  const side = effect < 0 ? "below" : "above";
  const where = Number.isFinite(effect)
    ? ` It lies ${Math.abs(effect).toFixed(1)} standard deviations ${side} the mean of the permuted ones.`
    : "";
  return `Of ${iterations} arrangements, the observed one among them, ${count} were at least as extreme as it.${where}`;
}

function statisticsTable(statistics) {
  const table = scrollingTable({
    caption: "Statistics, with their probability under permutation of the OTUs",
    header: ["", "What it says", "Value", "P", "Effect (SES)", "In words"],
    rows: statistics.map((row) => [
      row.statistic,
      row.meaning,
      shortNumber(row.value),
      shortNumber(row.P),
      Number.isFinite(numberOf(row.SES)) ? numberOf(row.SES).toFixed(2) : "–",
      sentence(row),
    ]),
  });
  table.classList.add("statistics", "whole");
  return table;
}

function tableDetails(title, text) {
  const { header, rows } = readTable(text);
  return h(
    "details",
    {},
    h("summary", {}, `Table: ${title}`),
    scrollingTable({
      caption: title,
      header,
      rows: rows.map(([first, ...cells]) => [
        first,
        ...cells.map((cell) =>
          cell !== "" && Number.isFinite(numberOf(cell)) ? shortNumber(cell) : cell,
        ),
      ]),
    }),
  );
}

function analysis(table, data) {
  const statistics = readObjects(table("statistics"));
  const ordinations = { T: table("ordinationT"), X: table("ordinationX") };
  const hasOrdination = ordinations.T !== null || ordinations.X !== null;
  return [
    statisticsTable(statistics),
    h("h3", {}, "Null distributions"),
    nullFigure(statistics, readTable(table("null"))),
    hasOrdination ? h("h3", {}, "Ordination of the communities") : null,
    hasOrdination ? ordinationFigure(ordinations, data.environment) : null,
    ordinations.T === null ? null : tableDetails("ordination by traits", ordinations.T),
    ordinations.X === null ? null : tableDetails("ordination by types", ordinations.X),
    h("h3", {}, "Diversity and redundancy"),
    diversityFigures(readTable(table("communities")), data.environment),
    tableDetails("diversity and redundancy of the communities", table("communities")),
  ].filter((part) => part !== null);
}

const SUBSETS_SHOWN = 30;

function ranking(table, data, criterion) {
  const best = readObjects(table("best"));
  const tested = table("test") === null ? null : readObjects(table("test"));
  const ranked = readObjects(table("ranked"));
  const traitsOf = (row) => data.traits.filter((trait) => row[trait] === "1").join(", ");
  const probabilityOf = ({ size }) => tested?.find((row) => row.size === size)?.P;
  const subset = (row) => [row.size, shortNumber(row.value), traitsOf(row)];
  const withP = (row) => [...subset(row), ...(tested ? [shortNumber(probabilityOf(row))] : [])];
  const all = tested?.find(({ size }) => size === "all");
  return [
    all
      ? h("p", {}, `Best of all sizes: P = ${shortNumber(all.P)}, over the whole search.`)
      : h(
          "div",
          { class: "warning" },
          "A test of the winning subset on the same data is not valid, since it was chosen by them: give a number of permutations under Test.",
        ),
    h("h3", {}, "Best subset of each size"),
    rankingFigure(best, tested, criterion, traitsOf),
    scrollingTable({
      caption: `Best subset of each size by ${criterion}`,
      header: ["Size", "Value", "Traits", ...(tested ? ["P"] : [])],
      rows: best.map(withP),
    }),
    h("h3", {}, "Ranked subsets"),
    scrollingTable({
      caption: `The first ${Math.min(SUBSETS_SHOWN, ranked.length)} subsets by ${criterion}`,
      header: ["Place", "Size", "Value", "Traits"],
      rows: ranked.slice(0, SUBSETS_SHOWN).map((row) => [row.place, ...subset(row)]),
    }),
  ];
}

/** Fills `root` with the results of a command. */
export function resultsView(root, { command, outcome, data }) {
  const screen = outcome.screen.at(-1);
  const report = told(screen, "Report");
  const folder = told(screen, "Tables");
  const text = (name) => {
    const bytes = outcome.files.get(name);
    return bytes === undefined ? null : decoder.decode(bytes);
  };
  const table = (name) => text(`${folder}/${name}.csv`);
  const parts =
    command === "analyse"
      ? analysis(table, data)
      : ranking(table, data, folder.slice(folder.indexOf("Rank_") + "Rank_".length));
  fill(
    root,
    outcome.warnings.map((warning) => h("div", { class: "warning" }, warning)),
    parts,
    h("h3", {}, "Files"),
    downloadButtons({ session: data.session, report, folder, files: outcome.files }),
    h(
      "p",
      { class: "note" },
      `With the session's files in a folder, "TESSEL --config settings.toml ${command} ${data.session}" repeats this run at the console.`,
    ),
    h(
      "details",
      {},
      h("summary", {}, "Settings of this run"),
      h("pre", {}, text(`${folder}/settings.toml`)),
    ),
    h(
      "details",
      {},
      h("summary", {}, "Report"),
      h("pre", { class: "scroll", tabindex: "0" }, text(report)),
    ),
  );
}
