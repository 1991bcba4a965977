# Results of a run: the tables of its folder, one object for each kind of run.

# The tables that stay raw until they are asked for: reading a hundred thousand
# rows would take longer than their computation.
raw_tables <- "null.csv"

read_csv <- function(path) {
  utils::read.csv(path,
    check.names = FALSE, na.strings = c("", "NaN"), encoding = "UTF-8",
    stringsAsFactors = FALSE
  )
}

# A matrix under its names from a table with the rows' names in the first column.
as_named_matrix <- function(table) {
  matrix <- as.matrix(table[-1])
  rownames(matrix) <- table[[1]]
  matrix
}

# The settings of the run: the lines of its settings file, by option.
read_settings <- function(path) {
  lines <- read_utf8(path)
  lines <- lines[grepl("=", lines, fixed = TRUE) & !grepl("^\\s*#", lines)]
  values <- trimws(sub("^[^=]*=", "", lines))
  values <- sub("^\"(.*)\"$", "\\1", values)
  stats::setNames(values, trimws(sub("=.*$", "", lines)))
}

read_tables <- function(folder) {
  files <- list.files(folder, pattern = "\\.csv$")
  if (length(files) == 0 || !file.exists(file.path(folder, "settings.toml"))) {
    stop("The folder ", folder, " holds no tables of TESSEL: it needs settings.toml and CSV files.",
      call. = FALSE
    )
  }
  paths <- file.path(folder, files)
  is_raw <- files %in% raw_tables
  tables <- lapply(paths[!is_raw], read_csv)
  names(tables) <- sub("\\.csv$", "", files[!is_raw])
  raw <- lapply(paths[is_raw], function(path) {
    readBin(path, "raw", n = file.size(path))
  })
  names(raw) <- sub("\\.csv$", "", files[is_raw])
  list(
    tables = tables, raw = raw,
    settings = read_settings(file.path(folder, "settings.toml"))
  )
}

# What tells the kinds of folders apart, and the class of each.
kinds_of_results <- c(
  communities = "tessel_analysis", ranked = "tessel_ranking",
  rates = "tessel_simulation"
)

#' Results from a folder of tables
#'
#' Reads the tables that the program wrote elsewhere, on a cluster say, into the
#' object that the run would have given here.
#' @param folder the folder of tables, with `settings.toml`.
#' @return An object of class `tessel_analysis`, `tessel_ranking` or
#'   `tessel_simulation`. It has no report, and no environment to draw.
#' @examples
#' a <- read_tessel(system.file("extdata", "tables", package = "tessel"))
#' a
#' @export
read_tessel <- function(folder) {
  if (!dir.exists(folder)) {
    stop("There is no folder ", folder, ".", call. = FALSE)
  }
  read <- read_tables(folder)
  kind <- kinds_of_results[names(kinds_of_results) %in% names(read$tables)]
  if (length(kind) == 0) {
    stop("The tables in ", folder, " are of no analysis, ranking or simulation with evaluation.",
      call. = FALSE
    )
  }
  structure(read, class = unname(kind[[1]]))
}

# Runs a command on a copy of the session, beside nothing else, and reads its
# tables; the folder goes unless the user named it.
run_on_session <- function(data, command, options, folder, report) {
  data <- with_session(data)
  where <- if (is.null(folder)) new_folder("run") else user_folder(folder)
  if (is.null(folder)) on.exit(unlink(where, recursive = TRUE))
  session <- list.files(data$folder, paste0("^", session_of_package, ".*\\.(txt|csv)$"))
  file.copy(file.path(data$folder, session), where, overwrite = TRUE)
  for (name in c("types", "within")) options <- group_file(options, name, where)
  arguments <- c(
    command, session_of_package, "--tables", "tables",
    if (!is.null(folder)) "--force", option_arguments(options)
  )
  run_program(arguments, where)
  result <- read_tessel(file.path(where, "tables"))
  result$report <- read_utf8(list.files(where, report, full.names = TRUE)[[1]])
  result
}

# Types and groups may be given as a named vector, which becomes a file of two
# columns, or as a file, which the program must find from the folder where it runs.
group_file <- function(options, name, folder) {
  value <- options[[name]]
  if (!is.null(names(value))) {
    path <- paste0(name, ".csv")
    write_table(data.frame(type = as.character(value), row.names = names(value)),
      file.path(folder, path)
    )
    options[[name]] <- path
  } else if (!is.null(value)) {
    options[[name]] <- full_path(value)
  }
  options
}

# Files are named from the user's folder, where the program does not run.
full_path <- function(value) {
  is_file <- is.character(value) && length(value) == 1 && file.exists(value) && !dir.exists(value)
  if (is_file) normalizePath(value) else value
}

#' Values of the statistics under the null model
#'
#' @param x an analysis, or a ranking with a test.
#' @return A matrix: a row for each arrangement, the observed one first, a column
#'   for each statistic.
#' @examples
#' a <- read_tessel(system.file("extdata", "tables", package = "tessel"))
#' head(null_values(a))
#' @export
null_values <- function(x) {
  raw <- x$raw[["null"]]
  if (is.null(raw)) {
    stop("These results carry no null values.", call. = FALSE)
  }
  from <- rawConnection(raw)
  on.exit(close(from))
  header <- strsplit(readLines(from, 1), ",", fixed = TRUE)[[1]]
  values <- scan(from,
    sep = ",", quiet = TRUE, na.strings = c("", "NaN"), what = double()
  )
  values <- matrix(values, ncol = length(header), byrow = TRUE, dimnames = list(NULL, header))
  values[, -1, drop = FALSE]
}
