# Data frames in: the tables become a session of the program.

session_of_package <- "study"

#' The tables of a study
#'
#' Hands traits, communities, environment and phylogeny to the program, which
#' matches them by their names, whatever their order, finds the kinds of the
#' variables and says what is wrong with them.
#'
#' Factors and characters are nominal variables, factors of two levels and
#' logicals binary, ordered factors ordinal, numbers quantitative. `NA` is a
#' missing value in `traits` and an error elsewhere. The tables stay in the
#' object, so that it can be saved and used in another session of R.
#' @param traits data frame or matrix: OTUs (species) in rows, traits in columns.
#' @param communities data frame or matrix: communities in rows, OTUs in columns.
#' @param environment data frame or matrix: communities in rows, variables in
#'   columns; `NULL` where there is none.
#' @param phylogeny a tree of class `phylo` (package ape), a tree as text in the
#'   Newick form, a `dist`, a square matrix by names, or the path of a file of
#'   either kind. Each table may be the path of a CSV file too.
#' @param drop_unmatched leave out what stands in one table only; else it is an
#'   error that lists the names.
#' @param drop_empty leave out OTUs that occur nowhere and communities without
#'   OTUs.
#' @param binary,nominal,ordinal,quantitative names of variables whose kind is
#'   to be this one, whatever their class.
#' @param trait_groups named vector: the group of each trait, for weights by
#'   groups.
#' @param same_units the variables of the environment have the same units.
#' @param phylogeny_similarities the matrix holds similarities from 0 to 1.
#' @param folder where the session's files are to stay; `NULL`: in the temporary
#'   folder of the R session.
#' @return An object of class `tessel_data`. `print()` shows what was read,
#'   `summary()` the same with the names.
#' @seealso [tessel_analyse()], [tessel_rank()], [tessel_check()]
#' @examples
#' alps <- function(file) {
#'   path <- system.file("extdata", file, package = "tessel")
#'   read.csv(path, row.names = 1, check.names = FALSE)
#' }
#' if (tessel_available()) {
#'   d <- tessel_data(alps("traits.csv"), alps("communities.csv"), alps("environment.csv"))
#'   d
#' }
#' @export
tessel_data <- function(traits, communities, environment = NULL,
                        phylogeny = NULL, drop_unmatched = FALSE,
                        drop_empty = FALSE, binary = NULL, nominal = NULL,
                        ordinal = NULL, quantitative = NULL,
                        trait_groups = NULL, same_units = FALSE,
                        phylogeny_similarities = FALSE, folder = NULL) {
  tables <- list(
    traits = as_table(traits, "traits"),
    communities = as_table(communities, "communities"),
    environment = if (!is.null(environment)) {
      as_table(environment, "environment")
    }
  )
  kinds <- c(kinds_of(tables$traits), kinds_of(tables$environment))
  options <- list(
    drop_unmatched = drop_unmatched, drop_empty = drop_empty,
    binary = c(binary, names(kinds)[kinds == "binary"]),
    nominal = c(nominal, names(kinds)[kinds == "nominal"]),
    ordinal = c(ordinal, names(kinds)[kinds == "ordinal"]),
    quantitative = quantitative,
    trait_groups = trait_groups_option(trait_groups),
    same_units = same_units, phylogeny_similarities = phylogeny_similarities
  )
  given <- c(binary, nominal, ordinal, quantitative)
  for (kind in c("binary", "nominal", "ordinal")) {
    said <- list(binary = binary, nominal = nominal, ordinal = ordinal)[[kind]]
    options[[kind]] <- setdiff(options[[kind]], setdiff(given, said))
    if (length(options[[kind]]) == 0) options[kind] <- list(NULL)
  }
  data <- structure(
    list(
      tables = tables, phylogeny = phylogeny_text(phylogeny),
      options = options, folder = NULL, summary = NULL
    ),
    class = "tessel_data"
  )
  make_session(data, folder)
}

# Writes the tables and imports them, in a folder of the R session's or in one
# that the user named.
make_session <- function(data, folder = NULL) {
  where <- if (is.null(folder)) new_folder("tessel") else user_folder(folder)
  imported <- function() {
    arguments <- c("import", write_tables(data, where), "--session", session_of_package)
    flags <- c("drop_unmatched", "drop_empty", "same_units", "phylogeny_similarities")
    run_program(
      c(arguments, option_arguments(data$options, flags), if (!is.null(folder)) "--force"),
      where
    )
  }
  data$summary <- if (is.null(folder)) keep_if_done(where, imported()) else imported()
  data$folder <- where
  data
}

# Folders that were made anew, by the one that had gone.
remade_folders <- new.env(parent = emptyenv())

has_session <- function(folder) {
  !is.null(folder) && file.exists(file.path(folder, paste0(session_of_package, "Formda.txt")))
}

# The data with a folder of their session; it is made anew, once, where it has
# gone with the R session that made it.
with_session <- function(data) {
  if (has_session(data$folder)) {
    return(data)
  }
  gone <- data$folder
  data$folder <- remade_folders[[gone]]
  if (!has_session(data$folder)) {
    data <- make_session(data)
    assign(gone, data$folder, envir = remade_folders)
  }
  data
}

as_table <- function(table, what) {
  if (is.character(table) && length(table) == 1) {
    if (!file.exists(table)) {
      stop("There is no file ", table, " (", what, ").", call. = FALSE)
    }
    return(normalizePath(table))
  }
  if (inherits(table, "table")) table <- unclass(table)
  if (is.matrix(table)) {
    if (is.null(colnames(table))) {
      stop(what, ": the matrix has no column names; give each column its name.", call. = FALSE)
    }
    table <- as.data.frame(table, stringsAsFactors = FALSE, check.names = FALSE)
  }
  if (!is.data.frame(table)) {
    stop(what, " must be a data frame, a matrix with names, or the path of a CSV file.",
      call. = FALSE
    )
  }
  # A data frame without row names of its own has no names that could be matched.
  if (.row_names_info(table) < 0) {
    stop(what, ": the rows have no names; set row.names, or read the file with row.names = 1.",
      call. = FALSE
    )
  }
  plain <- vapply(table, function(column) is.atomic(column) && is.null(dim(column)), logical(1))
  if (!all(plain)) {
    stop(what, ": the column ", names(table)[!plain][1],
      " holds lists or matrices; a cell must be one number or word.",
      call. = FALSE
    )
  }
  as.data.frame(table)
}

# What a column's class says about its kind; nothing for numbers and words.
kinds_of <- function(table) {
  if (!is.data.frame(table)) {
    return(character())
  }
  kinds <- vapply(table, function(column) {
    if (is.ordered(column)) {
      "ordinal"
    } else if (is.factor(column)) {
      if (nlevels(droplevels(column)) == 2) "binary" else "nominal"
    } else if (is.logical(column)) {
      "binary"
    } else {
      ""
    }
  }, character(1))
  kinds[nzchar(kinds)]
}

# The cells as text, numbers in full.
cells_of <- function(column) {
  if (is.ordered(column) || is.logical(column)) column <- as.integer(column)
  if (is.numeric(column)) {
    text <- formatC(as.numeric(column), digits = 17, format = "g", width = 1)
    text[is.na(column)] <- ""
    return(text)
  }
  text <- enc2utf8(as.character(column))
  text[is.na(text)] <- ""
  paste0("\"", gsub("\"", "\"\"", text), "\"")
}

write_table <- function(table, path) {
  quoted <- function(text) paste0("\"", gsub("\"", "\"\"", enc2utf8(text)), "\"")
  columns <- lapply(table, cells_of)
  rows <- do.call(paste, c(list(quoted(rownames(table))), unname(columns), sep = ","))
  header <- paste(c("\"\"", quoted(names(table))), collapse = ",")
  writeLines(c(header, rows), path, useBytes = TRUE)
}

# The arguments that name the tables; those of the package's own are written into
# the folder, where the program runs.
write_tables <- function(data, folder) {
  arguments <- character()
  for (name in names(data$tables)) {
    table <- data$tables[[name]]
    if (is.null(table)) next
    path <- table
    if (is.data.frame(table)) {
      path <- paste0(name, ".csv")
      write_table(table, file.path(folder, path))
    }
    arguments <- c(arguments, paste0("--", name), path)
  }
  if (!is.null(data$phylogeny)) {
    path <- file.path(folder, data$phylogeny$file)
    if (is.data.frame(data$phylogeny$content)) {
      write_table(data$phylogeny$content, path)
    } else {
      writeLines(data$phylogeny$content, path, useBytes = TRUE)
    }
    arguments <- c(arguments, "--phylogeny", data$phylogeny$file)
  }
  arguments
}

# A tree of ape's, distances, a square matrix, a path or a tree as text.
phylogeny_text <- function(phylogeny) {
  if (is.null(phylogeny)) {
    return(NULL)
  }
  if (inherits(phylogeny, "phylo")) {
    if (!requireNamespace("ape", quietly = TRUE)) {
      stop("The package ape is needed to hand over a tree of its class.", call. = FALSE)
    }
    tree <- ape::write.tree(phylogeny, digits = 17)
    return(list(file = "phylogeny.nwk", content = tree))
  }
  if (inherits(phylogeny, "dist")) phylogeny <- as.matrix(phylogeny)
  if (is.character(phylogeny) && length(phylogeny) == 1) {
    if (file.exists(phylogeny)) {
      return(list(
        file = paste0("phylogeny.", tools::file_ext(phylogeny)),
        content = readLines(phylogeny, warn = FALSE)
      ))
    }
    if (!grepl("(", phylogeny, fixed = TRUE)) {
      stop("There is no file ", phylogeny, " (phylogeny), and it is no tree in the Newick form.",
        call. = FALSE
      )
    }
    return(list(file = "phylogeny.nwk", content = phylogeny))
  }
  list(file = "phylogeny.csv", content = as_table(phylogeny, "phylogeny"))
}

#' @export
print.tessel_data <- function(x, ...) {
  cat(x$summary[-1], sep = "\n")
  invisible(x)
}

#' @export
summary.tessel_data <- function(object, ...) {
  structure(list(lines = object$summary), class = "summary.tessel_data")
}

#' @export
print.summary.tessel_data <- function(x, ...) {
  cat(x$lines, sep = "\n")
  invisible(x)
}

#' What looks wrong with a study
#'
#' Sizes, kinds, missing values, names and findings of the program.
#' @param data an object of [tessel_data()], or the path of a session: folder
#'   and name.
#' @return An object of class `tessel_check`, which prints the program's lines.
#' @examples
#' alps <- function(file) {
#'   path <- system.file("extdata", file, package = "tessel")
#'   read.csv(path, row.names = 1, check.names = FALSE)
#' }
#' if (tessel_available()) {
#'   tessel_check(tessel_data(alps("traits.csv"), alps("communities.csv")))
#' }
#' @export
tessel_check <- function(data) {
  if (inherits(data, "tessel_data")) {
    data <- with_session(data)
    folder <- data$folder
    session <- session_of_package
  } else {
    folder <- dirname(data)
    session <- basename(data)
  }
  structure(list(lines = run_program(c("check", session), folder)), class = "tessel_check")
}

#' @export
print.tessel_check <- function(x, ...) {
  cat(x$lines, sep = "\n")
  invisible(x)
}
