// Ordination of the communities, with traits or types and environment as arrows.

import * as Plot from "@observablehq/plot";
import { numberOf, readObjects, shortNumber } from "../csv.js";
import { figure, select } from "./frame.js";

const ARROWS = 12; // more labels of one kind than this cannot be told apart
const LABEL_HEIGHT = 14;
const LETTER_WIDTH = 8; // on average, of the labels' font
const GAP = 4;
const MARGIN = 34;

function pointsOf(text) {
  return readObjects(text).map(({ kind, name, axis1, axis2 }) => ({
    kind,
    name,
    x: numberOf(axis1),
    y: numberOf(axis2),
  }));
}

const length = ({ x, y }) => Math.hypot(x, y);

/** The longest arrows of a kind, at the scale of the points. */
function arrowsOf(points, isOfKind, scale) {
  return points
    .filter((p) => isOfKind(p.kind) && Number.isFinite(length(p)))
    .sort((a, b) => length(b) - length(a))
    .slice(0, ARROWS)
    .map((p) => ({ ...p, x: p.x * scale, y: p.y * scale, correlation: p }));
}

/** Labels at the arrows' tips, moved into the picture and then apart, away from the middle. */
function placeLabels(arrows, { toX, toY, width }) {
  const middle = toY(0);
  const labels = arrows.map((arrow) => {
    const room = arrow.name.length * LETTER_WIDTH;
    const [px, py] = [toX(arrow.x), toY(arrow.y)];
    const left = arrow.x < 0 ? px - GAP - room : px + GAP;
    return { arrow, room, px, py, left: Math.max(2, Math.min(left, width - room - 2)), at: py };
  });
  const placed = [];
  for (const label of labels.sort((a, b) => Math.abs(a.py - middle) - Math.abs(b.py - middle))) {
    const step = label.py <= middle ? -2 : 2;
    const covers = (other) =>
      Math.abs(other.at - label.at) < LABEL_HEIGHT &&
      other.left < label.left + label.room + GAP &&
      label.left < other.left + other.room + GAP;
    while (placed.some(covers)) label.at += step;
    placed.push(label);
  }
  return placed;
}

function colourOf(points, environment, variable) {
  const column = Object.keys(environment?.[0] ?? {})[0];
  const byName = new Map(environment?.map((row) => [row[column], row[variable]]));
  const values = points.map(({ name }) => byName.get(name));
  const isNumber = values.every((v) => v !== undefined && v !== "" && Number.isFinite(Number(v)));
  return { byName, isNumber };
}

/** What stands beside the colours: least, middle and greatest number, or the words, at most 8. */
function legendOf(values, isNumber) {
  if (!isNumber) return [...new Set(values)].slice(0, 8);
  const [low, high] = [Math.min(...values), Math.max(...values)];
  return [...new Set([high, (low + high) / 2, low])];
}

/** `tables`: the texts of ordinationT.csv and ordinationX.csv, by "T" and "X", as far as there are. */
export function ordinationFigure(tables, environment) {
  const by = [
    ["T", "by traits (T)"],
    ["X", "by types (X)"],
  ].filter(([key]) => tables[key]);
  const variables = environment ? Object.keys(environment[0]).slice(1) : [];
  const state = { by: by[0][0], colour: "" };

  function draw(width) {
    const points = pointsOf(tables[state.by]);
    const communities = points.filter(({ kind }) => kind === "community");
    const share = points.find(({ kind }) => kind === "share");
    const reach = Math.max(...communities.map(length));
    const arrows = points.filter(({ kind }) => kind !== "community" && kind !== "share");
    const scale = (0.9 * reach) / Math.max(...arrows.map(length).filter(Number.isFinite));
    const traits = arrowsOf(points, (k) => k === "trait" || k === "type", scale);
    const variablesShown = arrowsOf(points, (k) => k === "environment", scale);
    const { byName, isNumber } = colourOf(communities, environment, state.colour);
    const isColoured = state.colour !== "";
    const value = ({ name }) => (isNumber ? Number(byName.get(name)) : byName.get(name));
    const axis = (k, x) => `axis ${k} (${shortNumber(100 * x)} %)`;
    const shown = [...communities, ...traits, ...variablesShown];
    const domain = (of) => {
      const [low, high] = [Math.min(0, ...shown.map(of)), Math.max(0, ...shown.map(of))];
      const edge = 0.08 * (high - low);
      return [low - edge, high + edge];
    };
    const x = domain((p) => p.x);
    const y = domain((p) => p.y);
    // Both axes at one scale, as far as the page allows: distances are to be compared.
    const aspect = (y[1] - y[0]) / (x[1] - x[0]);
    const options = {
      width,
      height: Math.max(280, Math.min(aspect * (width - 2 * MARGIN), 660)) + 2 * MARGIN,
      margin: MARGIN,
      style: { fontSize: "12px", background: "transparent" },
      x: { label: `${axis(1, share.x)} →`, domain: x, ticks: [] },
      y: { label: `↑ ${axis(2, share.y)}`, domain: y, ticks: [] },
    };
    const { scale: scaleOf } = Plot.plot({ ...options, marks: [] });
    const [toX, toY] = [scaleOf("x").apply, scaleOf("y").apply];
    const arrowMarks = (list, colour, name) => [
      Plot.arrow(list, {
        x1: 0,
        y1: 0,
        x2: "x",
        y2: "y",
        stroke: colour,
        strokeWidth: 1.6,
        headLength: 7,
        ariaLabel: name,
      }),
    ];
    const labels = placeLabels([...traits, ...variablesShown], { toX, toY, width });
    const labelMarks = labels.map(({ arrow, px, py, left, at }) =>
      Plot.text([arrow], {
        x: "x",
        y: "y",
        text: "name",
        dx: left - px,
        dy: at - py,
        textAnchor: "start",
        fill: arrow.kind === "environment" ? "var(--second)" : "var(--accent)",
        stroke: "var(--card)",
        strokeWidth: 4,
        fontWeight: 600,
      }),
    );
    // The colours explain themselves in the saved picture too.
    const legendMarks = legendOf(communities.map(value), isNumber).flatMap((shade, k) => {
      const place = { frameAnchor: "top-left", dy: 24 + 16 * k };
      return [
        Plot.dot([shade], { ...place, dx: 8, dy: 28 + 16 * k, r: 4, fill: (d) => d }),
        Plot.text([shade], {
          ...place,
          dx: 18,
          textAnchor: "start",
          text: (d) => (isNumber ? shortNumber(d) : d),
        }),
      ];
    });
    const legendTitle = Plot.text([state.colour], {
      frameAnchor: "top-left",
      dx: 4,
      dy: 8,
      textAnchor: "start",
      fontWeight: 600,
    });
    return Plot.plot({
      ...options,
      color: isColoured
        ? {
            legend: false,
            scheme: isNumber ? "viridis" : undefined,
            type: isNumber ? "linear" : "categorical",
          }
        : undefined,
      marks: [
        Plot.ruleX([0], { stroke: "var(--line)" }),
        Plot.ruleY([0], { stroke: "var(--line)" }),
        Plot.dot(communities, {
          x: "x",
          y: "y",
          r: 4,
          fill: isColoured ? value : "var(--faint)",
          fillOpacity: isColoured ? 0.9 : 0.55,
          ariaLabel: "name",
        }),
        ...arrowMarks(traits, "var(--accent)", "traits"),
        ...arrowMarks(variablesShown, "var(--second)", "environment"),
        ...labelMarks,
        ...(isColoured ? [legendTitle, ...legendMarks] : []),
        Plot.tip(
          communities,
          Plot.pointer({
            x: "x",
            y: "y",
            title: (p) =>
              isColoured ? `${p.name}\n${state.colour}: ${byName.get(p.name)}` : p.name,
            fill: "var(--card)",
            stroke: "var(--line)",
            ariaHidden: "true",
          }),
        ),
      ],
    });
  }

  const made = figure({
    name: "ordination",
    label:
      "Principal components of the communities; the table below has the scores and the correlations of the arrows.",
    caption: `Points: communities; hover for their names. Arrows: correlations of the axes with traits or types (green) and environment (orange), the ${ARROWS} strongest of each.`,
    controls: [
      select("Communities", by, (value) => {
        state.by = value;
        made.redraw();
      }),
      variables.length > 0
        ? select("Colour", [["", "none"], ...variables.map((v) => [v, v])], (value) => {
            state.colour = value;
            made.redraw();
          })
        : null,
    ].filter(Boolean),
    draw,
  });
  return made.element;
}
