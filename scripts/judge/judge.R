# Values of the statistics of the two example data sets, from general packages where they have them
# and from formulas written out here where they do not: the tests hold the program against them.
#
#   Rscript scripts/judge/judge.R examples > tests/data/judge_values.txt
#
# One line per value or vector: its name, then the numbers with 12 digits. A matrix stands as two
# vectors over its rows: the sums (".rows") and the sums weighted by the column number (".weighted").

suppressPackageStartupMessages({
  library(vegan)
  library(ade4)
  library(cluster)
  library(ape)
})

folder <- commandArgs(trailingOnly = TRUE)[1]

show <- function(name, values) {
  cat(paste(c(name, sprintf("%.12g", as.numeric(values))), collapse = " "), "\n", sep = "")
}
show_matrix <- function(name, m) {
  m <- unname(as.matrix(m))
  show(paste0(name, ".rows"), rowSums(m))
  show(paste0(name, ".weighted"), m %*% seq_len(ncol(m)))
}

cat("# Made by scripts/judge/judge.R with ", R.version.string, ":\n#", sep = "")
for (p in c("vegan", "ade4", "cluster", "ape")) cat("", p, as.character(packageVersion(p)))
cat("\n# One line per value or vector. A matrix stands as the sums of its rows and the sums weighted by\n")
cat("# the column number, counted from 1.\n")

# ---- The data

numbers_of <- function(text) as.numeric(strsplit(trimws(text), "[[:space:]]+")[[1]])
table_of <- function(file, rows, cols) {
  words <- scan(file, what = "", quiet = TRUE)[seq_len(rows * cols)]
  matrix(as.numeric(words), rows, cols, byrow = TRUE)
}

read_example <- function(name) {
  dir <- file.path(folder, name)
  readme <- readLines(file.path(dir, "README.txt"))
  field <- function(key) {
    line <- grep(paste0("^", key, ": "), readme, value = TRUE)
    if (length(line)) sub("^[^:]*: ", "", line[1]) else NULL
  }
  size <- function(key) as.integer(field(key))
  d <- list(name = name)
  d$types <- as.integer(numbers_of(field("trait types")))
  d$B <- table_of(file.path(dir, "B.txt"), size("OTUs"), size("traits"))
  d$W <- table_of(file.path(dir, "W.txt"), size("communities"), size("OTUs"))
  d$E <- table_of(file.path(dir, "E.txt"), size("communities"), size("E variables"))
  d$partition <- scan(file.path(dir, "types.txt"), quiet = TRUE)[seq_len(size("OTUs"))]
  # A trait weighs one over the size of its group.
  d$weights <- rep(1, size("traits"))
  if (!is.null(field("trait groups"))) {
    groups <- numbers_of(field("trait groups"))
    d$weights <- 1 / as.vector(table(groups)[as.character(groups)])
  }
  if (file.exists(file.path(dir, "F.txt"))) {
    f <- table_of(file.path(dir, "F.txt"), size("OTUs"), size("OTUs"))
    d$F <- f / max(f)
  }
  if (!is.null(field("E_mixed variables"))) {
    d$mixed <- table_of(file.path(dir, "E_mixed.txt"), size("communities"), size("E_mixed variables"))
    d$mixed_types <- as.integer(numbers_of(field("E_mixed types")))
  }
  d
}

# ---- Measures

# Ordinal variables are ranked and then taken as interval-scaled; matching absences of a binary
# variable count (a symmetric variable).
gower <- function(x, types, weights = rep(1, ncol(x))) {
  x <- as.data.frame(x)
  symmetric <- which(types == 1)
  for (k in which(types == 4)) x[[k]] <- rank(x[[k]])
  for (k in which(types == 2)) x[[k]] <- factor(x[[k]])
  for (k in symmetric) x[[k]] <- as.numeric(x[[k]])
  type <- if (length(symmetric)) list(symm = symmetric) else list()
  1 - as.matrix(suppressWarnings(daisy(x, "gower", type = type, weights = weights)))
}

# Degrees of belonging: mean resemblance to the members of a type, rows at unit sum. Of members of a
# type at a raw resemblance of 1 only the first counts. With dissimilarities 1 - m is averaged.
belonging <- function(m, partition, dissimilarity) {
  n <- nrow(m)
  labels <- sort(unique(partition))
  first <- seq_len(n)
  for (i in seq_len(n)) {
    if (first[i] != i) next
    same <- which(seq_len(n) > i & first == seq_len(n) & partition == partition[i] & abs(m[i, ] - 1) < 1e-7)
    first[same] <- i
  }
  near <- if (dissimilarity) 1 - m else m
  u <- matrix(0, n, length(labels))
  for (g in seq_along(labels)) {
    members <- which(partition == labels[g] & first == seq_len(n))
    for (i in seq_len(n)) {
      others <- members[first[members] != first[i]]
      own <- if (partition[i] == labels[g]) near[i, i] else 0
      u[i, g] <- (sum(near[i, others]) + own) / length(members)
    }
  }
  u / rowSums(u)
}

# Rao's entropy of each row of w: ade4 takes half the squared dissimilarities.
rao <- function(w, d) {
  suppressWarnings(divc(as.data.frame(t(w)), as.dist(sqrt(2 * d)))$diversity)
}

# Beals smoothing with abundances in the conditional values and in the smoothing; and the form on
# products of performances, rows at unit sum.
beals_z <- function(w, include = TRUE) unclass(beals(w, type = 3, include = include))
beals_y <- function(w) {
  m <- crossprod(w)
  (w / rowSums(w)) %*% (m / rowSums(m))
}

euclid <- function(x) vegdist(x, "euclidean")
resemblance <- function(x, rese_opt) {
  switch(as.character(rese_opt), "6" = euclid(x), "8" = vegdist(x, "manhattan"), "10" = vegdist(x, "chord"))
}
unit_columns <- function(x) sweep(x, 2, sqrt(colSums(x^2)), "/")

pcoa_of <- function(d) {
  axes <- pcoa(as.dist(d))
  keep <- axes$values$Eigenvalues > 1e-6 * sum(axes$values$Eigenvalues[axes$values$Eigenvalues > 0])
  list(values = axes$values$Eigenvalues[keep], scores = axes$vectors[, keep[seq_len(ncol(axes$vectors))]])
}

# ---- Congruence

mantel_r <- function(a, b) mantel(a, b, permutations = 0)$statistic
mantel_partial_r <- function(a, b, c) mantel.partial(a, b, c, permutations = 0)$statistic
partial_r <- function(ab, ac, bc) (ab - ac * bc) / sqrt((1 - ac^2) * (1 - bc^2))

procrustes_r <- function(a, b) suppressWarnings(protest(a, b, permutations = 0)$t0)
rv_r <- function(a, b) RV.rtest(as.data.frame(a), as.data.frame(b), nrepet = 1)$obs

# Residuals of the columns of a on the first principal components (correlation matrix) of c: as many
# as there are, at most (n - 2) / 2.
residuals_on <- function(a, c) {
  pca <- prcomp(c, scale. = TRUE)
  axes <- sum(pca$sdev^2 > 1e-8 * sum(pca$sdev^2))
  limit <- (nrow(a) - 2) / 2
  use <- if (axes > limit) trunc(limit) else axes
  residuals(lm(a ~ pca$x[, seq_len(use), drop = FALSE]))
}

# ---- One analysis

matrices <- function(d, unit, crisp) {
  w <- if (unit) d$W / rowSums(d$W) else d$W
  s <- gower(d$B, d$types, d$weights)
  u <- if (crisp) outer(d$partition, sort(unique(d$partition)), "==") * 1 else belonging(s, d$partition, FALSE)
  m <- list(S = s, T = unit_columns(w %*% d$B), X = w %*% u, E = scale(d$E), Z = beals_z(w), Y = beals_y(w))
  m$R <- matrix(1 / (1 - rao(w, sqrt(pmax(1 - s, 0)))))
  if (!is.null(d$F)) {
    m$P <- w %*% belonging(d$F, d$partition, TRUE)
    m$F <- matrix(1 / (1 - rao(w, d$F)))
  }
  m
}

mantel_analysis <- function(d, rese_opt, unit = TRUE, crisp = FALSE, de = NULL) {
  m <- matrices(d, unit, crisp)
  # The variables at unit length about their means: a factor that cancels in a correlation.
  dist <- list(T = euclid(m$T), E = if (is.null(de)) euclid(m$E) else de, R = vegdist(m$R, "manhattan"))
  for (k in c("X", "Z", "Y")) dist[[k]] <- resemblance(m[[k]], rese_opt)
  if (!is.null(d$F)) {
    dist$P <- resemblance(m$P, rese_opt)
    dist$F <- vegdist(m$F, "manhattan")
  }
  r <- function(pair) mantel_r(dist[[substr(pair, 1, 1)]], dist[[substr(pair, 2, 2)]])
  p <- function(name) {
    mantel_partial_r(dist[[substr(name, 1, 1)]], dist[[substr(name, 2, 2)]], dist[[substr(name, 4, 4)]])
  }
  ro <- list()
  for (pair in c("TE", "TZ", "TY", "XE", "XZ", "XY", "RE")) ro[[pair]] <- r(pair)
  for (name in c("XE_T", "XZ_T", "XY_T")) ro[[name]] <- p(name)
  ro$XE_TR <- partial_r(p("XE_R"), p("XT_R"), p("TE_R"))
  if (!is.null(d$F)) {
    ro$BF <- mantel_r(as.dist(1 - m$S), as.dist(d$F))
    for (pair in c("FE", "PE", "PT", "PX")) ro[[pair]] <- r(pair)
    for (name in c("PX_T", "TE_P", "XE_P", "PE_T", "PE_X")) ro[[name]] <- p(name)
    ro$XE_TP <- partial_r(p("XE_P"), p("XT_P"), p("TE_P"))
  }
  ro
}

data_analysis <- function(d, coefficient, unit = TRUE) {
  m <- matrices(d, unit, FALSE)
  r <- function(pair) coefficient(m[[substr(pair, 1, 1)]], m[[substr(pair, 2, 2)]])
  p <- function(pair, removed) {
    covariables <- do.call(cbind, m[strsplit(removed, "")[[1]]])
    coefficient(residuals_on(m[[substr(pair, 1, 1)]], covariables),
                residuals_on(m[[substr(pair, 2, 2)]], covariables))
  }
  ro <- list()
  for (pair in c("TE", "TZ", "TY", "XE", "XZ", "XY", "RE")) ro[[pair]] <- r(pair)
  for (pair in c("XE", "XY")) ro[[paste0(pair, "_T")]] <- p(pair, "T")
  ro$XE_TR <- p("XE", "TR")
  if (!is.null(d$F)) {
    ro$BF <- coefficient(unit_columns(d$B), pcoa_of(d$F)$scores)
    for (pair in c("FE", "PE", "PT", "PX")) ro[[pair]] <- r(pair)
    for (pair in c("PX", "PE")) ro[[paste0(pair, "_T")]] <- p(pair, "T")
    for (pair in c("TE", "XE")) ro[[paste0(pair, "_P")]] <- p(pair, "P")
    ro$PE_X <- p("PE", "X")
    ro$XE_TP <- p("XE", "TP")
  }
  ro
}

show_all <- function(name, ro) for (k in names(ro)) show(paste0(name, ".ro", k), ro[[k]])

# ---- The two examples

for (name in c("aravo", "mafragh")) {
  d <- read_example(name)
  at <- function(what) paste0(name, ".", what)

  s <- gower(d$B, d$types)
  show_matrix(at("gower"), s)
  weighted <- gower(d$B, d$types, d$weights)
  show_matrix(at("gower_weighted"), weighted)
  w <- d$W / rowSums(d$W)
  show(at("gini"), divc(as.data.frame(t(d$W)))$diversity)
  show(at("rao_sqrt"), rao(w, sqrt(pmax(1 - weighted, 0))))
  show(at("rao"), rao(w, pmax(1 - weighted, 0)))
  show_matrix(at("beals"), beals_z(d$W))
  show_matrix(at("beals_others"), beals_z(d$W, include = FALSE))
  show_matrix(at("chord"), vegdist(d$W, "chord"))
  show_matrix(at("manhattan"), vegdist(d$W, "manhattan"))

  model <- lm(unit_columns(w %*% d$B) ~ d$E)
  show_matrix(at("lm_coefficients"), coef(model))
  show(at("lm_r2"), sapply(summary(model), function(m) m$r.squared))
  show(at("pca_eigenvalues"), prcomp(d$E, scale. = TRUE)$sdev^2)

  if (!is.null(d$F)) {
    show(at("rao_phylogeny"), rao(w, d$F))
    axes <- pcoa_of(d$F)
    classical <- cmdscale(as.dist(d$F), k = length(axes$values), eig = TRUE)
    stopifnot(max(abs(classical$eig[seq_along(axes$values)] - axes$values)) < 1e-12)
    show(at("pcoa_eigenvalues"), axes$values)
    # Of scores whose axes may turn within an eigenvalue, the products among objects stand.
    show(at("pcoa_products.weighted"), tcrossprod(axes$scores) %*% seq_len(nrow(d$F)))
  }
  if (!is.null(d$mixed)) {
    mixed <- gower(d$mixed, d$mixed_types)
    show_matrix(at("gower_mixed"), mixed)
    show_all(at("mixed"), mantel_analysis(d, 6, de = as.dist(1 - mixed)))
  }

  show_all(at("mantel6"), mantel_analysis(d, 6))
  show_all(at("mantel8"), mantel_analysis(d, 8))
  show_all(at("mantel10_raw"), mantel_analysis(d, 10, unit = FALSE))
  show_all(at("mantel6_crisp"), mantel_analysis(d, 6, crisp = TRUE))
  show_all(at("procrustes"), data_analysis(d, procrustes_r))
  show_all(at("rv"), data_analysis(d, rv_r))
  show_all(at("rv_raw"), data_analysis(d, rv_r, unit = FALSE))
}
