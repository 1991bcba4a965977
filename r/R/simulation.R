#' Error rates from simulated communities
#'
#' Assembles communities in a world of a settings file, tests each data set and
#' tells how often each test rejects.
#' @param world path of the settings file. The tables that it names stand in the
#'   same folder.
#' @param ... settings in the place of the file's, with underscores for hyphens:
#'   `data_sets = 50`, `sites = 40`, `iterations = 199`.
#' @param folder where all files are to stay; `NULL`: they are read and taken away.
#' @return An object of class `tessel_simulation`, with the tables `rates` and
#'   `statistics`.
#' @examples
#' world <- system.file("extdata", "world", "filter.toml", package = "tessel")
#' if (tessel_available()) tessel_simulate(world, data_sets = 5, iterations = 39)
#' @export
tessel_simulate <- function(world, ..., folder = NULL) {
  if (!is.character(world) || length(world) != 1 || !file.exists(world)) {
    stop("`world` must be the path of a settings file, such as world.toml; there is none at ",
      paste(world, collapse = " "), ".",
      call. = FALSE
    )
  }
  settings <- list(...)
  if (length(settings) > 0 && (is.null(names(settings)) || any(names(settings) == ""))) {
    stop("Settings must be named, as in tessel_simulate(world, sites = 40).", call. = FALSE)
  }
  where <- if (is.null(folder)) new_folder("run") else user_folder(folder)
  if (is.null(folder)) on.exit(unlink(where, recursive = TRUE))
  # The world names its tables from where it stands.
  copied <- list.files(dirname(world), "\\.(csv|tsv|txt|toml)$", full.names = TRUE)
  file.copy(copied, where)
  beside <- vapply(settings, function(value) value[[1]] %in% basename(copied), logical(1))
  settings[!beside] <- lapply(settings[!beside], full_path)
  arguments <- c(
    "simulate", basename(world), "--tables", "tables", "--force",
    option_arguments(settings)
  )
  run_program(arguments, where)
  result <- read_tessel(file.path(where, "tables"))
  report <- file.path(where, "FinalSimulatedData.txt")
  result$report <- read_utf8(report)
  result
}

#' @export
as.data.frame.tessel_simulation <- function(x, row.names = NULL, optional = FALSE, ...) { # nolint
  x$tables$rates
}

#' @export
print.tessel_simulation <- function(x, digits = 3, ...) {
  rates <- x$tables$rates
  cat(
    "Rates of rejection in ", rates[["data sets"]][[1]], " simulated data sets, alpha ",
    rates$alpha[[1]], "\n\n",
    sep = ""
  )
  print(data.frame(
    statistic = rates$statistic, rate = signif(rates$rate, digits),
    from = signif(rates[["lower limit"]], digits),
    to = signif(rates[["upper limit"]], digits), meaning = ifelse(is.na(rates$meaning), "", rates$meaning)
  ), row.names = FALSE, right = FALSE)
  invisible(x)
}

#' @export
summary.tessel_simulation <- function(object, ...) {
  structure(list(rates = object$tables$rates, settings = object$settings),
    class = "summary.tessel_simulation"
  )
}

#' @export
print.summary.tessel_simulation <- function(x, ...) {
  print(x$rates, row.names = FALSE)
  cat("\nSettings\n")
  cat(paste0("  ", names(x$settings), " = ", x$settings), sep = "\n")
  invisible(x)
}
