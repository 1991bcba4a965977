#' Functional analysis: assembly patterns and their probabilities.
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
  if (is.null(groups)) NULL else paste(names(groups), groups, sep = "=")
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

#' The statistics as a data frame.
as.data.frame.tessel_analysis <- function(x, row.names = NULL, optional = FALSE, ..., # nolint
                                          adjust = "none") {
  table <- x$tables$statistics
  table$P_adjusted <- stats::p.adjust(table$P, method = adjust)
  if (!is.null(row.names)) rownames(table) <- row.names
  table
}

print.tessel_analysis <- function(x, digits = 3, ...) {
  table <- x$tables$statistics
  settings <- x$settings
  cat(
    "Functional analysis, ", settings[["congruence"]], " congruence, ",
    max(table$iterations), " arrangements (seed ", settings[["seed"]], ")\n\n",
    sep = ""
  )
  print(data.frame(
    statistic = table$statistic, value = signif(table$value, digits),
    P = signif(table$P, digits), effect = signif(table$SES, digits),
    meaning = table$meaning, verdict = in_words(table$P)
  ), row.names = FALSE, right = FALSE)
  invisible(x)
}

summary.tessel_analysis <- function(object, ...) {
  structure(
    list(
      statistics = object$tables$statistics, settings = object$settings,
      communities = summary(object$tables$communities[-1])
    ),
    class = "summary.tessel_analysis"
  )
}

print.summary.tessel_analysis <- function(x, ...) {
  print(x$statistics, row.names = FALSE)
  cat("\nDiversity and redundancy of the communities\n")
  print(x$communities)
  cat("\nSettings\n")
  cat(paste0("  ", names(x$settings), " = ", x$settings), sep = "\n")
  invisible(x)
}

#' Null values for vegan's permustats.
as_permustats <- function(x) {
  warning("vegan counts P as (N + 1) / (permutations + 1) of values at least as large, without ",
    "TESSEL's tolerance and, for two tails, not of magnitudes: small differences are expected.",
    call. = FALSE
  )
  values <- null_values(x)
  structure(
    list(
      statistic = values[1, ], permutations = values[-1, , drop = FALSE],
      alternative = "two.sided"
    ),
    class = "permustats"
  )
}
