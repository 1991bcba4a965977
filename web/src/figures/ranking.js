// The best subset of traits of each size, with what chance gives where the search was tested.

import * as Plot from "@observablehq/plot";
import { numberOf, shortNumber } from "../csv.js";
import { figure } from "./frame.js";

/** `best`: rows of best.csv; `test`: rows of test.csv or null; `traitsOf` names a row's traits. */
export function rankingFigure(best, test, criterion, traitsOf) {
  const points = best.map((row) => ({
    size: Number(row.size),
    value: numberOf(row.value),
    traits: traitsOf(row),
  }));
  const chance = (test ?? [])
    .filter(({ size }) => size !== "all")
    .map((row) => ({
      size: Number(row.size),
      mean: numberOf(row.null_mean),
      sd: numberOf(row.null_sd),
    }));
  const apart = Math.ceil(points.length / 12);
  const ticks = points.map(({ size }) => size).filter((_, k) => k % apart === 0);
  const draw = (width) =>
    Plot.plot({
      width,
      height: Math.min(360, width * 0.75),
      marginLeft: 52,
      style: { fontSize: "12px", background: "transparent" },
      x: { label: "traits in the subset →", ticks, tickFormat: "d" },
      y: { label: `↑ best value of ${criterion}`, grid: true, nice: true },
      marks: [
        Plot.areaY(chance, {
          x: "size",
          y1: (d) => d.mean - d.sd,
          y2: (d) => d.mean + d.sd,
          fill: "var(--bar)",
          fillOpacity: 0.5,
        }),
        Plot.lineY(chance, {
          x: "size",
          y: "mean",
          stroke: "var(--faint)",
          strokeDasharray: "4 3",
        }),
        Plot.lineY(points, { x: "size", y: "value", stroke: "var(--second)" }),
        Plot.dot(points, { x: "size", y: "value", r: 5, fill: "var(--second)" }),
        Plot.tip(
          points,
          Plot.pointer({
            x: "size",
            y: "value",
            title: (p) => `${p.traits}\n${criterion}: ${shortNumber(p.value)}`,
            fill: "var(--card)",
            stroke: "var(--line)",
            ariaHidden: "true",
          }),
        ),
      ],
    });
  return figure({
    name: "ranking",
    label: `Best value of ${criterion} by the number of traits; the table below has the subsets.`,
    caption:
      chance.length > 0
        ? "Points: the best subset of each size; hover for its traits. Band: what the same search finds in permuted traits, mean and standard deviation."
        : "Points: the best subset of each size; hover for its traits.",
    draw,
  }).element;
}
