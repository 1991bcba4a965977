// Small tables, and twenty ways in which a table of them is wrong: what differs, and beside which
// table the message belongs.

export const GOOD_TABLES = {
  "traits.csv": "otu,height,area\nPoa,1.5,3\nCarex,2,4\nStipa,5,1\n",
  "communities.csv": "site,Poa,Carex,Stipa\na,1,0,2\nb,0,3,0\nc,1,1,1\nd,2,0,4\n",
  "environment.csv": "site,light,water\na,0.1,5\nb,2,6\nc,7,1\nd,1,2\n",
  "tree.nwk": "((Poa:1,Carex:1):1,Stipa:2);",
};

/** The file of the good tables with `from` replaced. */
function changed(file, from, to) {
  const text = GOOD_TABLES[file].replace(from, to);
  if (text === GOOD_TABLES[file]) throw new Error(`${file} has no ${from}`);
  return { [file]: text };
}

const wrong = (what, beside, file, from, to) => ({ what, beside, tables: changed(file, from, to) });

export const WRONG_TABLES = [
  wrong("an OTU without traits", "communities", "traits.csv", "Carex,2,4\n", ""),
  wrong("an OTU twice", "traits", "traits.csv", "Carex", "Poa"),
  wrong("a word among numbers", "traits", "traits.csv", "1.5", "tall"),
  wrong("an empty file of traits", "traits", "traits.csv", /[^]+/, ""),
  wrong("nothing below the header", "traits", "traits.csv", /\n[^]+/, "\n"),
  wrong("a row that is too short", "traits", "traits.csv", "Carex,2,4", "Carex,2"),
  wrong("a quote without end", "traits", "traits.csv", "Carex", '"Carex'),
  wrong("a number that is too large", "traits", "traits.csv", "1.5", "1e999"),
  wrong("a trait twice", "traits", "traits.csv", "area", "height"),
  wrong("a trait without values", "traits", "traits.csv", /,(\d)\n/g, ",NA\n"),
  wrong("a binary file", "traits", "traits.csv", "Poa", "P\0a"),
  wrong("a negative quantity", "communities", "communities.csv", "a,1", "a,-1"),
  wrong("a missing quantity", "communities", "communities.csv", "a,1", "a,"),
  wrong("a community twice", "communities", "communities.csv", "\nb", "\na"),
  wrong("an empty community", "communities", "communities.csv", "b,0,3,0", "b,0,0,0"),
  wrong("a missing value of the environment", "environment", "environment.csv", "7,1", ",1"),
  wrong("a community without environment", "communities", "environment.csv", "c,7,1\n", ""),
  wrong("words among numbers of the environment", "environment", "environment.csv", "7", "much"),
  wrong("a tree that does not close", "phylogeny", "tree.nwk", ");", ";"),
  wrong("a tree of other species", "traits", "tree.nwk", "Poa", "Bromus"),
  wrong("a negative length", "phylogeny", "tree.nwk", "Carex:1", "Carex:-1"),
];
