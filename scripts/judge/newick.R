# Path lengths between the tips of random trees, by ape: the tests hold the reading of trees against
# them.
#
#   Rscript scripts/judge/newick.R > tests/data/newick_judge.txt
#
# Two lines per tree: the tree in the Newick form, then the distances of each tip to those before it,
# tips in the order of the tree, with 15 digits.

suppressPackageStartupMessages(library(ape))

set.seed(20)
cat("# Made by scripts/judge/newick.R with ", R.version.string, ", ape ",
    as.character(packageVersion("ape")), ".\n", sep = "")

show <- function(text) {
  tree <- read.tree(text = text)
  d <- cophenetic(tree)[tree$tip.label, tree$tip.label]
  cat(text, "\n", paste(sprintf("%.15g", t(d)[upper.tri(d)]), collapse = " "), "\n", sep = "")
}

trees <- list(rtree(3), rtree(17), rcoal(24), rtree(12, rooted = FALSE), stree(9, "left"),
              stree(5, "star"), di2multi(rtree(30), tol = 0.3))
for (tree in trees) {
  if (is.null(tree$edge.length)) tree$edge.length <- rexp(nrow(tree$edge), 0.01)
  text <- write.tree(tree, digits = 15)
  # Every other length in exponent form, and inner labels as programs write them.
  number <- gregexpr(":[0-9.e-]+", text)
  lengths <- regmatches(text, number)[[1]]
  some <- seq(1, length(lengths), 2)
  lengths[some] <- sprintf(":%.16E", as.numeric(substring(lengths[some], 2)))
  regmatches(text, number) <- list(lengths)
  show(gsub("\\):", ")97:", text))
}
