// The program's own tables: commas, quotes only where a name needs them, a header.

function parseRecords(text) {
  const records = [];
  const cell = /(?:"((?:[^"]|"")*)"|([^",\n]*))(,|\n|$)/gy;
  let record = [];
  while (cell.lastIndex < text.length) {
    const [, quoted, bare, end] = cell.exec(text);
    record.push(quoted === undefined ? bare : quoted.replaceAll('""', '"'));
    if (end !== ",") {
      records.push(record);
      record = [];
    }
  }
  return records;
}

/** The header and the rows of texts. */
export function readTable(text) {
  const [header, ...rows] = parseRecords(text);
  return { header, rows };
}

/** A row's cells as an object by the header's names. */
export function readObjects(text) {
  const { header, rows } = readTable(text);
  return rows.map((row) => Object.fromEntries(header.map((name, k) => [name, row[k]])));
}

/** A number as the program writes it; what is empty is NaN. */
export function numberOf(cell) {
  if (cell === "Inf") return Infinity;
  if (cell === "-Inf") return -Infinity;
  return cell === "" ? NaN : Number(cell);
}

/** A number to be read by people. */
export function shortNumber(cell) {
  const value = typeof cell === "number" ? cell : numberOf(cell);
  if (!Number.isFinite(value)) return String(cell);
  if (value !== 0 && (Math.abs(value) < 1e-4 || Math.abs(value) >= 1e6)) {
    return value.toExponential(2);
  }
  return String(Number(value.toPrecision(4)));
}
