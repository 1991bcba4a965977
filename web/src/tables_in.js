// The tables that a user brings: which there are, and which of the files is which.

/** The options of import that take files, in the order of the page. */
export const TABLES = [
  { option: "traits", title: "Traits", needed: true, names: /trait|(^|[^a-z])b\./i },
  {
    option: "communities",
    title: "Communities",
    needed: true,
    names: /communit|abund|plot|releve|species_by|spe\.|(^|[^a-z])w\./i,
  },
  { option: "environment", title: "Environment", names: /env|soil|climat|(^|[^a-z])e\./i },
  {
    option: "phylogeny",
    title: "Phylogeny",
    names: /phylo|tree|newick|\.nwk$|\.tre$|(^|[^a-z])f\./i,
  },
  { option: "types", title: "Types of OTUs", names: /type/i },
];

function arrangements(items) {
  if (items.length === 0) return [[]];
  return items.flatMap((item, k) =>
    arrangements(items.filter((_, j) => j !== k)).map((rest) => [item, ...rest]),
  );
}

/**
 * Gives each file the option of the table that it is: by its name, else by trying which way round
 * the program takes the files. `tryImport` resolves to whether it takes a Map of options to files.
 * Files that fit nowhere are left out.
 */
export async function assignFiles(files, known, tryImport) {
  const assigned = new Map(known);
  const open = [];
  for (const file of files) {
    const table = TABLES.find(({ option, names }) => names.test(file.name) && !taken(option));
    if (table) assigned.set(table.option, file);
    else open.push(file);
  }
  function taken(option) {
    return files.includes(assigned.get(option));
  }
  if (open.length === 0) return assigned;
  const free = TABLES.map(({ option }) => option).filter((option) => !assigned.has(option));
  // More than a few unknown files are not worth all of their arrangements.
  for (const order of arrangements(free.slice(0, 4))) {
    const candidate = new Map(assigned);
    open.slice(0, order.length).forEach((file, k) => candidate.set(order[k], file));
    if (open.length <= 3 && (await tryImport(candidate))) return candidate;
  }
  open.slice(0, free.length).forEach((file, k) => assigned.set(free[k], file));
  return assigned;
}
