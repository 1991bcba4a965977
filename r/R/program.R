# Finding the program and running it.

oldest_program <- "2.11.08"

#' The program that the package runs
#'
#' `tessel_path()` tells where the program is, `tessel_version()` its version,
#' `tessel_available()` whether there is one that is new enough. The program is
#' looked for in this order: the option `tessel.program`, the environment
#' variable `TESSEL_PROGRAM`, the command path.
#' @return `tessel_path()`: a path. `tessel_version()`: a `numeric_version`.
#'   `tessel_available()`: `TRUE` or `FALSE`.
#' @examples
#' if (tessel_available()) tessel_version()
#' @export
tessel_path <- function() {
  candidates <- c(
    getOption("tessel.program", ""),
    Sys.getenv("TESSEL_PROGRAM"),
    Sys.which("TESSEL")
  )
  given <- candidates[nzchar(candidates)]
  if (length(given) == 0) {
    stop("The program TESSEL was not found. Install it, or tell where it is: ",
      "options(tessel.program = \"/path/to/TESSEL\").",
      call. = FALSE
    )
  }
  path <- path.expand(given[[1]])
  if (!file.exists(path) || file.access(path, 1) != 0) {
    stop("There is no program at ", path, ". Tell where it is: ",
      "options(tessel.program = \"/path/to/TESSEL\").",
      call. = FALSE
    )
  }
  unname(normalizePath(path))
}

#' @rdname tessel_path
#' @export
tessel_version <- function() {
  path <- tessel_path()
  printed <- tryCatch(
    suppressWarnings(system2(path, "--version", stdout = TRUE, stderr = TRUE,
      stdin = "/dev/null")),
    error = function(e) character()
  )
  version <- regmatches(printed, regexpr("[0-9]+(\\.[0-9]+)+", printed))
  if (length(version) == 0) {
    stop(path, " does not answer to --version: it is not TESSEL, or older than ",
      oldest_program, ". Install a newer one.",
      call. = FALSE
    )
  }
  numeric_version(version[[1]])
}

#' @rdname tessel_path
#' @export
tessel_available <- function() {
  !inherits(try(checked_path(), silent = TRUE), "try-error")
}

# The paths that were found new enough, so that a run asks once.
checked_programs <- new.env(parent = emptyenv())

checked_path <- function() {
  path <- tessel_path()
  stamp <- paste(path, file.mtime(path))
  if (is.null(checked_programs[[stamp]])) {
    version <- tessel_version()
    if (version < oldest_program) {
      stop("TESSEL ", version, " at ", path, " is too old: this package needs ",
        oldest_program, " or later.",
        call. = FALSE
      )
    }
    assign(stamp, TRUE, envir = checked_programs)
  }
  path
}
