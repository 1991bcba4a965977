#' Functional analysis
#'
#' Measures how strongly trait-convergence (TE), trait-divergence (XE.T) and
#' phylogenetically structured (PE) assembly patterns follow the environment, with
#' probabilities from permutations of the OTUs; diversity and redundancy of each
#' community. `NULL` leaves a setting to the program, whose defaults
#' `TESSEL analyse --help` tells.
#' @param data an object of [tessel_data()].
#' @param iterations arrangements of the test, the observed one among them.
#' @param seed start of the random numbers; `"clock"` takes the time.
#' @param congruence `"mantel"`, `"procrustes"` or `"rv"`.
#' @param resemblance between communities, under mantel: `"euclidean"`,
#'   `"chord"`, `"absolute"`, `"relative-euclidean"`, `"relative-absolute"`.
#' @param types `"each"`, `"species"`, a named vector with the type of each OTU,
#'   or a file.
#' @param belonging `"fuzzy"` or `"crisp"` types.
#' @param within a named vector with the group of each OTU, or a file: the OTUs
#'   are permuted within groups.
#' @param traits names of the traits to use; all where not given.
#' @param weight_by_groups,trait_groups weigh traits by the sizes of their
#'   groups; a named vector with the group of each trait.
#' @param standardise bring communities to unit totals.
#' @param tails `"two"` or `"one"`.
#' @param digits,details digits of the report, and whether it is detailed.
#' @param double_absence,root_traits,root_phylogeny,beals_target
#'   `TRUE` or `FALSE`: matching absences count as similarity; square roots of
#'   dissimilarities for Rao's entropy; Beals smoothing uses the OTU itself.
#' @param predictor_limit regressions take at most (n - 2) / this predictors.
#' @param save_random write all permuted tables (large).
#' @param folder where report and tables are to stay; `NULL`: they are read and
#'   taken away.
#' @return An object of class `tessel_analysis`: a list with `tables` (data
#'   frames), `report` (the lines of the report), `settings`. See
#'   [as.data.frame.tessel_analysis()], [plot.tessel_analysis()],
#'   [null_values()].
#' @examples
#' alps <- function(file) {
#'   path <- system.file("extdata", file, package = "tessel")
#'   read.csv(path, row.names = 1, check.names = FALSE)
#' }
#' if (tessel_available()) {
#'   d <- tessel_data(alps("traits.csv"), alps("communities.csv"), alps("environment.csv"))
#'   a <- tessel_analyse(d, iterations = 199, seed = 1)
#'   a
#' }
#' @export
tessel_analyse <- function(data, iterations = NULL, seed = NULL,
                           congruence = NULL, resemblance = NULL,
                           types = NULL, belonging = NULL, within = NULL,
                           traits = NULL, weight_by_groups = NULL,
                           trait_groups = NULL, standardise = NULL,
                           tails = NULL, digits = NULL, details = NULL,
                           double_absence = NULL, root_traits = NULL,
                           root_phylogeny = NULL, beals_target = NULL,
                           predictor_limit = NULL, save_random = NULL,
                           folder = NULL) {
  check_data(data)
  options <- list(
    iterations = iterations, seed = seed, congruence = congruence,
    resemblance = resemblance, types = types, belonging = belonging,
    within = within, traits = traits, weight_by_groups = weight_by_groups,
    trait_groups = trait_groups_option(trait_groups), standardise = standardise,
    tails = tails, digits = digits, details = details,
    double_absence = double_absence, root_traits = root_traits,
    root_phylogeny = root_phylogeny, beals_target = beals_target,
    predictor_limit = predictor_limit, save_random = save_random
  )
  result <- run_on_session(data, "analyse", options, folder, "Prinda\\.txt$")
  result$environment <- environment_of(data)
  result
}

check_data <- function(data) {
  if (!inherits(data, "tessel_data")) {
    stop("`data` must come from tessel_data(): tessel_data(traits, communities, environment).",
      call. = FALSE
    )
  }
}

trait_groups_option <- function(groups) {
  if (is.null(groups)) {
    return(NULL)
  }
  if (is.null(names(groups))) {
    stop("`trait_groups` must be a named vector: c(height = \"size\", area = \"leaf\").",
      call. = FALSE
    )
  }
  paste(names(groups), groups, sep = "=")
}

environment_of <- function(data) {
  table <- data$tables$environment
  if (is.character(table)) {
    table <- utils::read.csv(table, row.names = 1, check.names = FALSE)
  }
  table
}

in_words <- function(p) {
  as.character(cut(p, c(-Inf, 0.001, 0.01, 0.05, Inf),
    labels = c("P <= 0.001", "P <= 0.01", "P <= 0.05", "not significant")
  ))
}

#' The statistics of an analysis as a data frame
#'
#' @param x an analysis.
#' @param row.names,optional,... as in [as.data.frame()].
#' @param adjust a method of [stats::p.adjust()] for the column `P_adjusted`.
#' @return A row for each statistic: value, P, arrangements, mean and standard
#'   deviation of the null values, standardised effect size.
#' @examples
#' a <- read_tessel(system.file("extdata", "tables", package = "tessel"))
#' as.data.frame(a, adjust = "holm")
#' @export
as.data.frame.tessel_analysis <- function(x, row.names = NULL, optional = FALSE, ..., # nolint
                                          adjust = "none") {
  table <- x$tables$statistics
  table$P_adjusted <- stats::p.adjust(table$P, method = adjust)
  if (!is.null(row.names)) rownames(table) <- row.names
  table
}

#' @export
print.tessel_analysis <- function(x, digits = 3, ...) {
  table <- x$tables$statistics
  settings <- x$settings
  cat(
    "Functional analysis, ", settings[["congruence"]], " congruence, ",
    max(table$iterations), " arrangements (seed ", settings[["seed"]], ")\n\n",
    sep = ""
  )
  printed <- data.frame(
    statistic = table$statistic, value = format(signif(table$value, digits)),
    P = format(signif(table$P, digits)), effect = format(signif(table$SES, digits)),
    verdict = in_words(table$P)
  )
  # What the statistic means takes what is left of the line.
  room <- getOption("width") - nchar(utils::capture.output(
    print(printed, row.names = FALSE, right = FALSE)
  )[1]) - 3
  printed$meaning <- shorten(table$meaning, max(20, room))
  print(printed, row.names = FALSE, right = FALSE)
  invisible(x)
}

#' @export
summary.tessel_analysis <- function(object, ...) {
  structure(
    list(
      statistics = object$tables$statistics, settings = object$settings,
      communities = summary(object$tables$communities[-1])
    ),
    class = "summary.tessel_analysis"
  )
}

#' @export
print.summary.tessel_analysis <- function(x, ...) {
  print(x$statistics, row.names = FALSE)
  cat("\nDiversity and redundancy of the communities\n")
  print(x$communities)
  cat("\nSettings\n")
  cat(paste0("  ", names(x$settings), " = ", x$settings), sep = "\n")
  invisible(x)
}

#' Null values for vegan's permustats
#'
#' @param x an analysis, or a ranking with a test.
#' @return An object of class `permustats`, for the methods of the package vegan.
#'   A warning tells that P is counted otherwise there.
#' @examples
#' a <- read_tessel(system.file("extdata", "tables", package = "tessel"))
#' p <- suppressWarnings(as_permustats(a))
#' if (requireNamespace("vegan", quietly = TRUE)) summary(p)
#' @export
as_permustats <- function(x) {
  warning("vegan counts P as (N + 1) / (permutations + 1) of values at least as large, without ",
    "TESSEL's tolerance and, for two tails, not of magnitudes: small differences are expected.",
    call. = FALSE
  )
  values <- null_values(x)
  structure(
    list(
      statistic = values[1, ], permutations = values[-1, , drop = FALSE],
      alternative = if (identical(x$settings[["tails"]], "one")) "greater" else "two.sided"
    ),
    class = "permustats"
  )
}
