# What needs no program: results from folders of tables, their pictures, and what is said
# where there is no program or an old one.
stored <- function(...) system.file("extdata", ..., package = "tessel")
a <- read_tessel(stored("tables"))
r <- read_tessel(stored("ranking"))
s <- read_tessel(stored("simulation"))

# The null values say the same as the table of statistics, which the program made from them.
table <- as.data.frame(a)
null <- null_values(a)
expect_equal(dim(null), c(199L, nrow(table)))
expect_equal(unname(null[1, ]), table$value)
expect_equal(unname(apply(null[-1, ], 2, mean)), table$null_mean)
expect_equal(unname(apply(null[-1, ], 2, sd)), table$null_sd)
extreme <- function(v) sum(abs(v) >= abs(v[1]) - 1e-12) / length(v)
expect_equal(unname(apply(null, 2, extreme)), table$P)
expect_equal(as.data.frame(a, adjust = "holm")$P_adjusted, p.adjust(table$P, "holm"))

# Printing tells every statistic, its probability and that in words.
expect_stdout <- function(object, patterns) {
  text <- paste(capture.output(print(object)), collapse = "\n")
  for (pattern in patterns) expect_true(grepl(pattern, text), info = pattern)
}
expect_stdout(a, c(
  "199 arrangements", "XE.T +0\\.\\d+ +0\\.00\\d+.*P <= 0.01", "TE .*not significant"
))
expect_stdout(summary(a), c("Rao_traits", "congruence = mantel"))
expect_stdout(r, c("Best subsets of traits by TE", "Height, Spread, Thick, SLA, N_mass"))
expect_stdout(summary(r), "criterion = TE")
expect_stdout(s, c("20 simulated data sets", "r\\(XE\\)"))
expect_stdout(summary(s), "sites = 30")

# vegan's class, with the warning.
expect_warning(p <- as_permustats(a), "vegan counts P")
expect_equal(dim(p$permutations), c(198L, nrow(table)))
if (requireNamespace("vegan", quietly = TRUE)) {
  expect_equal(unname(summary(p)$z), table$SES)
}

# Every picture goes to a file, at paper size and small, and gives its numbers.
drawn <- function(code, width = 7) {
  file <- tempfile(fileext = ".pdf")
  grDevices::pdf(file, width = width, height = width)
  before <- graphics::par(c("mar", "mfrow"))
  on.exit(unlink(file))
  value <- tryCatch(withVisible(force(code)),
    finally = {
      expect_equal(graphics::par(c("mar", "mfrow")), before)
      grDevices::dev.off()
    }
  )
  expect_true(file.size(file) > 2000)
  expect_false(value$visible)
  value$value
}
expect_equal(drawn(plot(a)), null[, c("TE", "XE", "XE.T", "RE", "XE.TR")])
expect_equal(colnames(drawn(plot(a, statistics = "XY"), 4)), "XY")
o <- drawn(plot(a, "ordination"))
placed <- subset(a$tables$ordinationT, kind == "community")
expect_equal(o$scores[, 1], setNames(placed$axis1, placed$name))
expect_equal(rownames(o$columns), names(a$tables$T)[-1])
# The program's axes are those of R's principal components, but for the sign; the columns of T
# have unit length there, not unit variance.
for (by in c("T", "X")) {
  values <- as.matrix(a$tables[[by]][-1])
  components <- stats::prcomp(values, scale. = by == "T")
  o <- drawn(plot(a, "ordination", by = by))
  unit <- if (by == "T") sqrt(74) else 1
  expect_equal(unname(abs(o$scores)), unname(abs(components$x[, 1:2])) / unit)
  expect_equal(unname(o$columns), unname(cor(values, o$scores)))
  expect_equal(unname(o$share[1, ]), (components$sdev^2 / sum(components$sdev^2))[1:2])
}
expect_equal(nrow(drawn(plot(a, "ordination", by = "X", labels = FALSE, arrows = 3))$columns), 8L)
expect_equal(nrow(drawn(plot(a, "resemblance", b = "DT"))), 75L * 74L / 2L)
expect_equal(dim(drawn(plot(a, "belonging"))), c(82L, 8L))
snow <- read.csv(stored("environment.csv"), row.names = 1)
d <- drawn(plot(a, "diversity", along = "Snow", environment = snow))
expect_equal(d$position, snow[d$community, "Snow"])
expect_equal(names(drawn(plot(r))), c("best", "ranked"))
expect_equal(nrow(drawn(plot(s))), 5L)
expect_equal(nrow(drawn(plot(s, s, along = c(10, 20), statistics = "r(TE)"))), 2L)

# Null values that are no numbers leave their panel empty, and the others stand.
b <- a
b$tables$statistics$value[1] <- NA
drawn(plot(b, statistics = c("TE", "XE")))

# Labels stay off points, off one another and inside.
grDevices::pdf(NULL)
plot(cos(1:40), sin((1:40)^2), xlim = c(-1.5, 1.5), ylim = c(-1.5, 1.5))
x <- cos(1:40)
y <- sin((1:40)^2)
placed <- tessel:::place_labels(x, y, paste("label", 1:40), blocked = cbind(x, y))
boxes <- placed$boxes
expect_true(nrow(boxes) > 10)
for (i in seq_len(nrow(boxes))) {
  expect_false(tessel:::meets(boxes[i, ], boxes[-i, , drop = FALSE]))
  expect_false(tessel:::covers(boxes[i, ], cbind(x, y)))
}
invisible(grDevices::dev.off())

# Wrong requests.
expect_error(plot(a, "pie"), "should be one of")
expect_error(plot(a, statistics = "QQ"), "no statistic QQ; it has TE")
expect_error(plot(a, "resemblance", a = "DP"), "no table DP.csv; it has")
expect_error(plot(a, "diversity", along = "Moon", environment = snow), "no variable Moon; it has A")
expect_error(plot(s, s, along = 1), "a value for each of the 2")
b$tables$ordinationT <- NULL
expect_error(plot(b, "ordination"), "no table ordinationT.csv")
expect_error(null_values(r), "no null values")
expect_error(read_tessel("nowhere"), "no folder nowhere")
expect_error(read_tessel(tempdir()), "no tables of TESSEL")

# The program is looked for by the option, the environment, the path; absent, old and foreign ones
# are told with what to do.
program <- function(...) {
  path <- tempfile("program")
  writeLines(c("#!/bin/sh", ...), path)
  Sys.chmod(path, "755")
  path
}
if (.Platform$OS.type == "unix") {
  old <- options(tessel.program = NULL)
  environment_before <- Sys.getenv(c("TESSEL_PROGRAM", "PATH"), names = TRUE)
  Sys.setenv(TESSEL_PROGRAM = "", PATH = tempfile())
  expect_error(tessel_path(), "not found. Install it, or tell where it is: options")
  Sys.setenv(PATH = environment_before[["PATH"]])
  dated <- program("echo TESSEL 1.9.3")
  Sys.setenv(TESSEL_PROGRAM = dated)
  expect_equal(tessel_path(), normalizePath(dated))
  expect_error(tessel_check("x"), "TESSEL 1.9.3 at .* is too old: this package needs 2.11.08")
  expect_false(tessel_available())
  options(tessel.program = program("exit 3"))
  expect_error(tessel_version(), "does not answer to --version")
  options(tessel.program = tempfile("none"))
  expect_error(tessel_path(), "no program at .*none")

  # A program that fails becomes an error with its line and status; one that warns, a warning; one
  # that is stopped says so; and nothing stays behind.
  fails <- program(
    "[ \"$1\" = --version ] && echo TESSEL 2.11.08 && exit",
    "echo 'TESSEL: warning: a doubt' >&2",
    "[ \"$2\" = stopped ] && kill -INT $$",
    "echo 'TESSEL: no use: tell --drop-empty' >&2; exit 3"
  )
  options(tessel.program = fails)
  expect_equal(as.character(tessel_version()), "2.11.8")
  before <- list.files(tempdir())
  failure <- tryCatch(tessel_check("x"), error = identity)
  expect_equal(conditionMessage(failure), "no use: tell `drop_empty`")
  expect_equal(failure$status, 3L)
  expect_error(tessel_check("stopped"), "interrupted or stopped")
  w <- data.frame(a = 1:2, row.names = c("x", "y"))
  expect_error(tessel_data(w, w), "no use")
  expect_error(tessel_simulate(stored("world", "filter.toml")), "no use")
  expect_equal(setdiff(list.files(tempdir()), before), character())
  options(old)
  do.call(Sys.setenv, as.list(environment_before))
}
