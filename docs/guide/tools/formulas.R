# The formulas of the guide's third chapter in plain R, held against the program's values: prints
# the largest difference over the statistics of each table.
#   Rscript formulas.R FOLDER_OF_TABLES... with traits.csv, communities.csv, environment.csv in the
#   working folder, phylogeny.csv and kinds.csv (trait, kind, weight) where they are
read <- function(file) {
  table <- as.matrix(read.csv(file, row.names = 1, check.names = FALSE))
  dimnames(table) <- lapply(dimnames(table), trimws)
  table
}

# Tables of OTUs.
B <- read("traits.csv")
W <- read("communities.csv")
B <- B[colnames(W), , drop = FALSE]
W <- W / rowSums(W)
kinds <- if (file.exists("kinds.csv")) read.csv("kinds.csv", row.names = 1)[colnames(B), ]
weight <- if (is.null(kinds)) rep(1, ncol(B)) else kinds$weight
S <- 0
for (k in seq_len(ncol(B))) {
  x <- B[, k]
  if (!is.null(kinds) && kinds$kind[k] == "ordinal") x <- rank(x)
  S <- S + weight[k] * (1 - abs(outer(x, x, "-")) / diff(range(x)))
}
S <- S / sum(weight)
U <- S / rowSums(S)

# Tables of communities.
E <- scale(read("environment.csv")[rownames(W), ])
T <- W %*% B
T <- sweep(T, 2, sqrt(colSums(T^2)), "/")
X <- W %*% U
occurrence <- crossprod(W, W > 0) / colSums(W)
diag(occurrence) <- 1
Z <- W %*% occurrence
performance <- crossprod(W)
Y <- W %*% (performance / rowSums(performance))
equivalent_number <- function(d) matrix(1 / (1 - rowSums((W %*% d) * W)))
R <- equivalent_number(sqrt(pmax(1 - S, 0)))
tables <- list(E = E, T = T, X = X, Z = Z, Y = Y, R = R)
if (file.exists("phylogeny.csv")) {
  distances <- read("phylogeny.csv")[colnames(W), colnames(W)]
  distances <- distances / max(distances)
  Q <- 1 - distances
  tables$P <- W %*% (Q / rowSums(Q))
  tables$F <- equivalent_number(distances)
}

# Congruence.
centred <- function(a) scale(a, scale = FALSE)
pair <- list(
  mantel = function(a, b) cor(as.vector(dist(a)), as.vector(dist(b))),
  procrustes = function(a, b) {
    a <- centred(a)
    b <- centred(b)
    sum(svd(crossprod(a, b))$d) / sqrt(sum(a^2) * sum(b^2))
  },
  rv = function(a, b) {
    a <- tcrossprod(centred(a))
    b <- tcrossprod(centred(b))
    sum(a * b) / sqrt(sum(a^2) * sum(b^2))
  }
)
partial <- function(ab, ac, bc) (ab - ac * bc) / sqrt((1 - ac^2) * (1 - bc^2))
residuals_on <- function(a, removed) {
  axes <- svd(scale(removed))
  count <- min(sum(axes$d^2 > 1e-8 * sum(axes$d^2)), floor((nrow(a) - 2) / 2))
  axes <- axes$u[, seq_len(count), drop = FALSE]
  a <- centred(a)
  a - axes %*% crossprod(axes, a)
}

# A statistic by its name: letters of the pair, a dot, letters of what is removed.
statistic <- function(name, way) {
  letters <- strsplit(sub("[.].*", "", name), "")[[1]]
  removed <- strsplit(sub("^[^.]*[.]?", "", name), "")[[1]]
  a <- letters[1]
  b <- letters[2]
  if (length(removed) == 0) {
    return(pair[[way]](tables[[a]], tables[[b]]))
  }
  if (way != "mantel") {
    removed <- do.call(cbind, tables[removed])
    return(pair[[way]](residuals_on(tables[[a]], removed), residuals_on(tables[[b]], removed)))
  }
  # The last letter is removed from the three correlations without it.
  last <- removed[length(removed)]
  rest <- paste(removed[-length(removed)], collapse = "")
  of <- function(x, y) statistic(paste0(x, y, if (rest != "") ".", rest), way)
  partial(of(a, b), of(a, last), of(b, last))
}

for (folder in commandArgs(TRUE)) {
  way <- sub('.*"(.*)".*', "\\1", grep("^congruence", readLines(file.path(folder, "settings.toml")), value = TRUE))
  values <- read.csv(file.path(folder, "statistics.csv"), row.names = 1)
  names <- setdiff(rownames(values), if (way == "mantel") "BF" else c("BF", "XZ.T"))
  ours <- vapply(names, statistic, numeric(1), way = way)
  if (way == "mantel" && "BF" %in% rownames(values)) {
    ours["BF"] <- -cor(S[upper.tri(S)], distances[upper.tri(S)])
  }
  off <- abs(ours - values[names(ours), "value"])
  cat(sprintf("%s: %d statistics, largest difference %s\n", folder, length(ours),
    if (max(off) < 1e-5) "below 0.00001" else format(max(off))))
}
