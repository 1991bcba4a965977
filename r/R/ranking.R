#' Subsets of traits that maximise a criterion
#'
#' Rates every subset of the traits. Testing the best of them on the same data as
#' if it had been chosen beforehand is no valid test: `test` repeats the whole
#' search in each permutation.
#' @inheritParams tessel_analyse
#' @param criterion the statistic to maximise: `"XE"`, `"XE.T"`, `"TE"`, `"PX"`,
#'   `"PX.T"`, `"PT"`, `"RE"` and so on, as `TESSEL rank --help` lists them.
#' @param sizes numbers of traits in a subset: `1:6`, or text such as `"1-6"`.
#' @param test number of permutations in which the search is repeated.
#' @param lines write a line for every subset to the results file.
#' @param digits digits of the results file.
#' @param double_absence,root_traits,beals_target `TRUE` or `FALSE`: matching
#'   absences count as similarity; square roots of dissimilarities for Rao's
#'   entropy; Beals smoothing uses the OTU itself.
#' @param save_structures write the tables of every subset (large).
#' @return An object of class `tessel_ranking`, with the tables `best`, `ranked`
#'   and, with a test, `test`.
#' @examples
#' alps <- function(file) {
#'   path <- system.file("extdata", file, package = "tessel")
#'   read.csv(path, row.names = 1, check.names = FALSE)
#' }
#' if (tessel_available()) {
#'   d <- tessel_data(alps("traits.csv"), alps("communities.csv"), alps("environment.csv"))
#'   tessel_rank(d, criterion = "TE", sizes = 1:3, test = 99, seed = 1)
#' }
#' @export
tessel_rank <- function(data, criterion, sizes = NULL, test = NULL,
                        seed = NULL, congruence = NULL, resemblance = NULL,
                        types = NULL, belonging = NULL, within = NULL,
                        traits = NULL, weight_by_groups = NULL,
                        trait_groups = NULL, standardise = NULL,
                        digits = NULL, lines = NULL, double_absence = NULL,
                        root_traits = NULL, beals_target = NULL,
                        predictor_limit = NULL, save_structures = NULL,
                        folder = NULL) {
  check_data(data)
  if (is.numeric(sizes)) sizes <- paste(unique(range(sizes)), collapse = "-")
  options <- list(
    criterion = criterion, sizes = sizes, test = test, seed = seed,
    congruence = congruence, resemblance = resemblance, types = types,
    belonging = belonging, within = within, traits = traits,
    weight_by_groups = weight_by_groups,
    trait_groups = trait_groups_option(trait_groups), standardise = standardise,
    digits = digits, lines = lines, double_absence = double_absence,
    root_traits = root_traits, beals_target = beals_target,
    predictor_limit = predictor_limit, save_structures = save_structures
  )
  run_on_session(data, "rank", options, folder, "ChRank_.*\\.txt$")
}

# The names of the traits of each row of a table with a 0/1 column per trait.
traits_of <- function(table, first) {
  members <- table[first:ncol(table)]
  apply(members == 1, 1, function(row) paste(names(members)[row], collapse = ", "))
}

first_trait_column <- function(table) {
  described <- c(
    "place", "size", "subsets", "value", "P", "iterations", "null_values",
    "null_mean", "null_sd", "SES"
  )
  max(which(names(table) %in% described)) + 1
}

#' @export
as.data.frame.tessel_ranking <- function(x, row.names = NULL, optional = FALSE, ...) { # nolint
  x$tables$ranked
}

#' @export
print.tessel_ranking <- function(x, digits = 4, ...) {
  best <- if (is.null(x$tables$test)) x$tables$best else x$tables$test
  table <- data.frame(traits = best$size, value = signif(best$value, digits))
  if (!is.null(best$P)) table$P <- signif(best$P, digits)
  table$subset <- traits_of(best, first_trait_column(best))
  cat("Best subsets of traits by ", x$settings[["criterion"]], "\n\n", sep = "")
  print(table, row.names = FALSE, right = FALSE)
  if (is.null(best$P)) {
    cat("\nTesting the winning subset on the same data is no valid test: use test = 999.\n")
  }
  invisible(x)
}

#' @export
summary.tessel_ranking <- function(object, n = 20, ...) {
  ranked <- utils::head(object$tables$ranked, n)
  structure(
    list(
      ranked = data.frame(
        place = ranked$place, traits = ranked$size, value = ranked$value,
        subset = traits_of(ranked, first_trait_column(ranked))
      ),
      settings = object$settings
    ),
    class = "summary.tessel_ranking"
  )
}

#' @export
print.summary.tessel_ranking <- function(x, ...) {
  print(x$ranked, row.names = FALSE, right = FALSE)
  cat("\nSettings\n")
  cat(paste0("  ", names(x$settings), " = ", x$settings), sep = "\n")
  invisible(x)
}
