// Null distributions: what the arrangements of the test gave, with the observed value.

import * as Plot from "@observablehq/plot";
import { numberOf, shortNumber } from "../csv.js";
import { figure } from "./frame.js";

const MAIN = 5; // statistics of assembly stand first in the table; all are many
const HEIGHT = 92;

/** `statistics`: rows of statistics.csv; `table`: null.csv, whose first row is the observed one. */
export function nullFigure(statistics, table) {
  const column = (name) => {
    const k = table.header.indexOf(name);
    return table.rows.map((row) => numberOf(row[k]));
  };
  const known = statistics.filter(({ value }) => Number.isFinite(numberOf(value)));
  const shown = known.slice(
    0,
    Math.max(
      MAIN,
      known.findIndex(({ statistic }) => statistic === "TZ"),
    ),
  );
  const names = shown.map(({ statistic }) => statistic);
  const values = names.flatMap((statistic) =>
    column(statistic)
      .slice(1)
      .filter(Number.isFinite)
      .map((value) => ({ statistic, value })),
  );
  const observed = shown.map(({ statistic, value, P }) => ({
    statistic,
    value: numberOf(value),
    text: `${statistic}  ${shortNumber(value)}, P = ${shortNumber(P)}`,
  }));
  const draw = (width) =>
    Plot.plot({
      width,
      height: names.length * HEIGHT + 66,
      marginBottom: 40,
      marginTop: 26,
      marginLeft: 12,
      marginRight: 12,
      style: { fontSize: "12px", background: "transparent" },
      x: { label: "value of the statistic →", labelOffset: 38, nice: true },
      y: { axis: null },
      fy: { domain: names, axis: null, padding: 0.3 },
      marks: [
        Plot.rectY(
          values,
          Plot.binX(
            { y: "proportion-facet" },
            { x: "value", fy: "statistic", thresholds: 40, fill: "var(--bar)" },
          ),
        ),
        Plot.ruleY([0], { stroke: "var(--line)" }),
        Plot.ruleX(observed, {
          x: "value",
          fy: "statistic",
          stroke: "var(--second)",
          strokeWidth: 2.5,
        }),
        Plot.text(observed, {
          fy: "statistic",
          text: "text",
          frameAnchor: "top-left",
          dy: -13,
          fontWeight: 600,
          fill: "currentColor",
        }),
      ],
    });
  return figure({
    name: "null-distributions",
    label: `Null distributions of ${names.join(", ")} with the observed values; the table of statistics has the numbers.`,
    caption:
      "Bars: values of the permuted arrangements. Line: the observed value. Where it stands apart from the bars, chance alone does not explain it.",
    draw,
  }).element;
}
