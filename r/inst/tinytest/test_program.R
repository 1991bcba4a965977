# What needs the program: the statistics against its report, against vegan and ape, and against
# themselves in another order; kinds of columns; wrong inputs.
if (!tessel_available()) exit_file("there is no program TESSEL here")

stored <- function(file) {
  read.csv(system.file("extdata", file, package = "tessel"), row.names = 1, check.names = FALSE)
}
traits <- stored("traits.csv")
communities <- stored("communities.csv")
environment <- stored("environment.csv")
study <- tessel_data(traits, communities, environment)
statistics <- function(a) setNames(a$tables$statistics$value, a$tables$statistics$statistic)
table_of <- function(a, name) {
  as.matrix(data.frame(a$tables[[name]], row.names = 1, check.names = FALSE))
}

# The lines "r(TE)= value P= probability" of the report, to its digits.
expect_as_reported <- function(a) {
  lines <- grep("r\\([A-Z.]+\\)=\t.*P=", a$report, value = TRUE)
  name <- sub(".*r\\(([A-Z.]+)\\)=.*", "\\1", lines)
  numbers <- strsplit(sub(".*r\\([A-Z.]+\\)=\t *", "", lines), "[\t ]*P=[\t ]*")
  table <- as.data.frame(a)
  rows <- match(name, table$statistic)
  expect_true(length(lines) >= 5 && !anyNA(rows))
  reported <- matrix(as.numeric(unlist(numbers)), ncol = 2, byrow = TRUE)
  expect_equal(signif(table$value[rows], 6), reported[, 1], tolerance = 1e-12)
  expect_equal(signif(table$P[rows], 6), reported[, 2], tolerance = 1e-12)
}
before <- list.files(tempdir())
a <- tessel_analyse(study, iterations = 99, seed = 1)
expect_as_reported(a)
expect_equal(list.files(tempdir()), before)
expect_equal(as.data.frame(a)$iterations, rep(99L, 11))

# Types, groups and a folder of one's own; the folder gives the same object again.
kept <- tempfile("kept")
types <- setNames(stored("types.csv")$type, rownames(stored("types.csv")))
b <- tessel_analyse(study,
  iterations = 19, seed = 1, types = rev(types), within = types,
  belonging = "crisp", folder = kept
)
expect_as_reported(b)
expect_equal(ncol(table_of(b, "U")), 8L)
expect_equal(read_tessel(file.path(kept, "tables"))$tables, b$tables)
from_file <- function(...) tessel_analyse(study, iterations = 9, seed = 1, ...)
here <- setwd(system.file("extdata", package = "tessel"))
expect_equal(
  from_file(types = "types.csv", belonging = "crisp", within = "types.csv")$tables$statistics$value,
  b$tables$statistics$value
)
setwd(here)

# Mantel, partial Mantel and Procrustes as vegan has them.
if (requireNamespace("vegan", quietly = TRUE)) {
  resemblance <- function(name) as.dist(table_of(a, name))
  mantel <- function(x, y) vegan::mantel(resemblance(x), resemblance(y), permutations = 0)$statistic
  partial <- function(...) {
    tables <- lapply(c(...), resemblance)
    vegan::mantel.partial(tables[[1]], tables[[2]], tables[[3]], permutations = 0)$statistic
  }
  expect_equal(statistics(a)[["TE"]], mantel("DT", "DE"))
  expect_equal(statistics(a)[["XE"]], mantel("DX", "DE"))
  expect_equal(statistics(a)[["XE.T"]], partial("DX", "DE", "DT"))
  p <- from_file(congruence = "procrustes")
  expect_as_reported(p)
  e <- scale(environment[rownames(table_of(p, "X")), ])
  protest <- function(y) suppressWarnings(vegan::protest(e, y, permutations = 0))$t0
  expect_equal(statistics(p)[["TE"]], protest(table_of(p, "TNormalised")))
  expect_equal(statistics(p)[["XE"]], protest(table_of(p, "X")))
}

# The order of species, sites and traits does not matter.
set.seed(3)
shuffled <- tessel_data(
  traits[sample(82), sample(8)], communities[sample(75), sample(82)], environment[sample(75), ]
)
expect_equal(
  statistics(tessel_analyse(shuffled, iterations = 1)), statistics(a),
  tolerance = 1e-6
)

# A data object outlives its folder.
unlink(study$folder, recursive = TRUE)
expect_equal(statistics(from_file()), statistics(a))

# Classes become kinds; a missing trait is taken; names keep their bytes.
mixed <- data.frame(
  tall = c(1.5, 2, NA, 4), colour = factor(c("red", "blue", "red", "white")),
  size = ordered(c("s", "m", "m", "l"), c("s", "m", "l")), woody = c(TRUE, FALSE, TRUE, TRUE),
  sex = factor(c("f", "m", "m", "f")), word = c("x,1", "y \"q\"", "z", "z"),
  row.names = c("\u00c5re", "b", "c", "d")
)
sites <- matrix(c(1, 2, 3, 0, 1, 4, 2, 2, 0, 5, 1, 1, 2, 2, 0, 3), 4,
  dimnames = list(paste0("s", 1:4), rownames(mixed))
)
kinds <- capture.output(summary(tessel_data(mixed, sites)))
for (line in c(
  "tall: quantitative, 1.5 to 4, 1 missing", "colour: nominal, 1 = blue; 2 = red; 3 = white",
  "size: ordinal, 1 to 3", "woody: binary", "sex: binary", "word: nominal", "'\u00c5re' to 'd'"
)) {
  expect_true(any(grepl(line, kinds, fixed = TRUE)), info = paste(line, kinds))
}
lost <- tessel_data(mixed, sites[, -2], drop_unmatched = TRUE)
expect_true(any(grepl("b", capture.output(summary(lost)))))
expect_inherits(tessel_check(lost), "tessel_check")

# A ranking agrees with the analysis of all its traits, and the test keeps the value.
r <- tessel_rank(study, "TE", sizes = c(1, 8), test = 9, seed = 1)
expect_equal(subset(r$tables$best, size == 8)$value, statistics(a)[["TE"]], tolerance = 1e-6)
expect_equal(r$tables$test$value[1:8], r$tables$best$value)
expect_equal(nrow(as.data.frame(tessel_rank(study, "XE", sizes = 2))), 28L)

# A simulation takes its world from its own folder; a setting stands before the file's.
world <- system.file("extdata", "world", "filter.toml", package = "tessel")
s <- tessel_simulate(world, data_sets = 3, iterations = 39)
expect_equal(as.data.frame(s)[["data sets"]][1], 3L)
expect_equal(sum(s$tables$rates$rejections[1]), with(s$tables$rates, (rate * `data sets`)[1]))

# The data of mafragh with a tree, as a tree of ape's, as text, as distances of ape's: the same.
mafragh <- file.path(Sys.getenv("TESSEL_EXAMPLES"), "mafragh")
if (dir.exists(mafragh)) {
  read <- function(file) read.csv(file.path(mafragh, file), row.names = 1, check.names = FALSE)
  tree <- file.path(mafragh, "phylogeny.nwk")
  with_tree <- function(phylogeny) {
    data <- tessel_data(
      read("traits.csv"), read("communities.csv"), read("environment.csv"), phylogeny
    )
    tessel_analyse(data, iterations = 19, seed = 1)
  }
  m <- with_tree(tree)
  expect_as_reported(m)
  expect_true(all(c("PE", "PT", "BF") %in% names(statistics(m))))
  if (requireNamespace("ape", quietly = TRUE)) {
    phylo <- ape::read.tree(tree)
    phylo$tip.label <- gsub("_", " ", phylo$tip.label)
    expect_equal(statistics(with_tree(phylo)), statistics(m))
    distances <- ape::cophenetic.phylo(phylo)
    expect_equal(statistics(with_tree(distances)), statistics(m), tolerance = 1e-6)
    expect_equal(statistics(with_tree(as.dist(distances))), statistics(m), tolerance = 1e-6)
  }
  if (requireNamespace("vegan", quietly = TRUE)) {
    resemblance <- function(name) as.dist(table_of(m, name))
    by_vegan <- vegan::mantel(resemblance("DP"), resemblance("DE"), permutations = 0)
    expect_equal(statistics(m)[["PE"]], by_vegan$statistic)
  }
}

# Wrong inputs: what is wrong is named, and nothing stays behind.
cell <- function(table, value, row = 1, column = 1) {
  table[row, column] <- value
  table
}
data <- function(b = traits, w = communities, e = environment, ...) tessel_data(b, w, e, ...)
analyse <- function(...) tessel_analyse(study, ...)
wrong <- alist(
  list(data(NULL), "traits must be a data frame"),
  list(data("none.csv"), "no file none.csv \\(traits\\)"),
  list(data(1:3), "traits must be a data frame"),
  list(data(w = list(1)), "communities must be a data frame"),
  list(data(data.frame(a = 1:3)), "traits: the rows have no names"),
  list(data(matrix(1:4, 2)), "traits: the matrix has no column names"),
  list(data(cbind(traits, l = I(as.list(1:82)))), "the column l holds lists"),
  list(data(e = environment[-1, ]), "'AR07'.*`drop_unmatched`"),
  list(data(traits[-1, ]), "'Agrostis rupestris All.'.*`drop_unmatched`"),
  list(data(w = communities[, -1]), "'Agrostis rupestris All.'"),
  list(data(w = communities[-1, ]), "environment.csv that communities.csv does not have: 'AR07'"),
  list(data(w = cell(communities, NA)), "communities.csv, line 2, .*the cell is empty"),
  list(data(w = cell(communities, -1)), "-1 is a negative quantity"),
  list(data(w = cell(communities, Inf)), "'Inf' is infinite"),
  list(data(w = cell(communities, "x")), "'x' is no number"),
  list(data(e = cell(environment, NA)), "'Aspect' \\(row 'AR07'\\): a missing value"),
  list(data(cell(traits, Inf)), "'Height' .*'Inf' is infinite"),
  list(data(w = rbind(communities, z = 0), e = rbind(environment, z = 1)), "'z'.*`drop_empty`"),
  list(data(traits[0, ]), "traits.csv: nothing stands below the header"),
  list(data(traits[, 0]), "no columns found"),
  list(data(cbind(traits, c = NA)), "column 'c': every cell is missing"),
  list(data(cbind(traits, Height = 1)), "two columns are named 'Height'"),
  list(data(t(traits)), "traits.csv: the table is turned"),
  list(data(w = t(communities)), "communities.csv: the table is turned"),
  list(data(e = t(environment)), "environment.csv: the table is turned"),
  list(data(communities, traits), "the table is turned"),
  list(data(binary = "Height"), "'Height': told to be binary"),
  list(data(nominal = "Hight"), "`nominal`: no trait or variable is named 'Hight' .near"),
  list(data(ordinal = "Height", nominal = "Height"), "nominal and ordinal"),
  list(data(trait_groups = c(Hight = "a")), "`trait_groups`: no trait is named 'Hight'"),
  list(data(trait_groups = "a"), "`trait_groups` must be a named vector"),
  list(data(drop_empty = "yes"), "`drop_empty` must be TRUE or FALSE"),
  list(data(phylogeny = "none.nwk"), "no file none.nwk \\(phylogeny\\)"),
  list(data(phylogeny = "((a,b),c"), "phylogeny.nwk, line 1, column 4"),
  list(data(phylogeny = "(a:1,b:1);"), "does not have: 'Agrostis|no .*'Agrostis"),
  list(data(phylogeny = matrix(0, 3, 3)), "phylogeny: the matrix has no column names"),
  list(data(phylogeny = traits), "phylogeny.csv: the row 'Agrostis rupestris All.' has no column"),
  list(tessel_analyse(traits), "must come from tessel_data"),
  list(analyse(iterations = 0), "`iterations`: takes 1 to"),
  list(analyse(iterations = "many"), "`iterations`: takes .* not many"),
  list(analyse(iterations = NA), "`iterations` must be known"),
  list(analyse(iterations = c(9, 99)), "`iterations` must be one value"),
  list(analyse(seed = -1), "`seed`: takes clock or"),
  list(analyse(congruence = "pearson"), "`congruence`: pearson"),
  list(analyse(resemblance = "bray"), "`resemblance`: bray"),
  list(analyse(types = "none.csv"), "none.csv: the file cannot be opened"),
  list(analyse(types = c(a = 1)), "types.csv"),
  list(analyse(within = c(a = 1)), "within.csv"),
  list(analyse(traits = "Hight"), "`traits`: there is no trait 'Hight' \\(near 'Height'\\)"),
  list(analyse(traits = character()), "`traits` must be one value, or several"),
  list(analyse(tails = "three"), "`tails`: three"),
  list(analyse(weight_by_groups = TRUE), "`weight_by_groups`: the session has no groups"),
  list(analyse(predictor_limit = 0), "`predictor_limit`: takes 1"),
  list(tessel_rank(study, "QQ"), "`criterion`: QQ not in"),
  list(tessel_rank(study, "PT"), "`criterion` PT: the session has no phylogeny"),
  list(tessel_rank(study, "TE", sizes = 9:12), "`sizes` 9-12: takes all, a number"),
  list(tessel_rank(study, "TE", test = -1), "`test`: Value -1"),
  list(tessel_simulate("none.toml"), "none at none.toml"),
  list(tessel_simulate(world, 5), "Settings must be named"),
  list(tessel_simulate(world, sites = "x"), "`sites`: Value x"),
  list(tessel_simulate(world, planets = 3), "'`?-*planets`?' is neither"),
  list(tessel_check("none"), "no session .?none")
)
before <- list.files(tempdir())
for (case in wrong) {
  expect_error(eval(case[[2]]), case[[3]], info = paste(deparse(case[[2]]), collapse = " "))
}
expect_true(length(wrong) >= 50)
expect_equal(list.files(tempdir()), before)
