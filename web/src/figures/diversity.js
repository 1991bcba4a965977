// Diversity and redundancy of the communities along a variable, a picture for each index.

import * as Plot from "@observablehq/plot";
import { numberOf, shortNumber } from "../csv.js";
import { h } from "../dom.js";
import { figure, select } from "./frame.js";

const TITLES = {
  "Gini-Simpson": "Gini-Simpson diversity",
  Rao_traits: "Rao entropy of traits",
  redundancy_traits: "Redundancy of traits",
  Rao_phylogeny: "Rao entropy of phylogeny",
  redundancy_phylogeny: "Redundancy of phylogeny",
};

function draw(width, { title, points, variable, isNumber }) {
  return Plot.plot({
    width,
    height: 272,
    marginLeft: 48,
    marginTop: 30,
    marginBottom: 44,
    style: { fontSize: "12px", background: "transparent" },
    x: { label: variable, labelOffset: 40, type: isNumber ? "linear" : "point", nice: isNumber },
    y: { label: `↑ ${title}`, ticks: 5, grid: true, nice: true },
    marks: [
      Plot.dot(points, { x: "x", y: "y", r: 3.5, fill: "var(--accent)", fillOpacity: 0.65 }),
      Plot.tip(
        points,
        Plot.pointer({
          x: "x",
          y: "y",
          title: (p) => `${p.name}\n${title}: ${shortNumber(p.y)}`,
          fill: "var(--card)",
          stroke: "var(--line)",
          ariaHidden: "true",
        }),
      ),
    ],
  });
}

/** `table`: communities.csv; `environment`: rows with the community's name first, or null. */
export function diversityFigures(table, environment) {
  const [nameColumn, ...variables] = Object.keys(environment?.[0] ?? {});
  const rowOf = new Map(environment?.map((row) => [row[nameColumn], row]));
  let variable = variables[0];

  function along() {
    if (variable === undefined) {
      return { isNumber: true, at: (_, k) => k + 1, label: "community, in the order of the data" };
    }
    const cell = (name) => rowOf.get(name)?.[variable] ?? "";
    const isNumber = table.rows.every(([name]) => Number.isFinite(numberOf(cell(name))));
    const at = (name) => (isNumber ? numberOf(cell(name)) : cell(name));
    return { isNumber, at, label: variable };
  }

  const figures = table.header.slice(1).map((index, j) => {
    const title = TITLES[index] ?? index;
    return figure({
      name: index.replace("_", "-"),
      label: `${title} of each community; the table below has the numbers.`,
      caption: "Each point is a community; hover for its name.",
      draw: (width) => {
        const { isNumber, at, label } = along();
        const points = table.rows.map((row, k) => ({
          name: row[0],
          x: at(row[0], k),
          y: numberOf(row[j + 1]),
        }));
        return draw(width, { title, points, variable: label, isNumber });
      },
    });
  });
  const control = select(
    "Along",
    variables.map((v) => [v, v]),
    (value) => {
      variable = value;
      figures.forEach((made) => made.redraw());
    },
  );
  return h(
    "div",
    {},
    variables.length > 0 ? control : null,
    h(
      "div",
      { class: "figures" },
      figures.map(({ element }) => element),
    ),
  );
}
