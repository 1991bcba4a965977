# Running the program in a folder.

# Its one line of failure becomes an R error, its warnings R warnings; what it
# prints on the screen is the value. The program is a child in the foreground,
# so that an interrupt in R ends it too.
run_program <- function(arguments, folder) {
  path <- checked_path()
  screen <- tempfile("screen")
  messages <- tempfile("messages")
  on.exit(unlink(c(screen, messages)))
  here <- setwd(folder)
  on.exit(setwd(here), add = TRUE)
  status <- suppressWarnings(system2(path, shQuote(arguments),
    stdout = screen, stderr = messages, stdin = "/dev/null"
  ))
  said <- read_utf8(messages)
  warned <- grepl("^TESSEL: warning: ", said)
  if (status != 0) fail_as_program(said[!warned & nzchar(said)], status)
  for (line in said[warned]) {
    warning(sub("^TESSEL: warning: ", "", line), call. = FALSE)
  }
  read_utf8(screen)
}

fail_as_program <- function(lines, status) {
  words <- sub("^TESSEL: ", "", paste(lines, collapse = "\n"))
  if (!nzchar(words)) {
    words <- paste0("TESSEL ended with status ", status, ": it was interrupted or stopped")
  }
  stop(structure(
    class = c("tessel_error", "error", "condition"),
    list(message = words, call = NULL, status = status)
  ))
}

read_utf8 <- function(path) {
  if (!file.exists(path)) {
    return(character())
  }
  readLines(path, encoding = "UTF-8", warn = FALSE)
}

# Options of the command line from the arguments of a function: a name with
# underscores stands for the option with hyphens. NULL leaves the program's
# default; TRUE and FALSE are yes and no, several values are one list of names.
option_arguments <- function(values, flags = character()) {
  values <- values[!vapply(values, is.null, logical(1))]
  unlist(lapply(names(values), function(name) {
    value <- values[[name]]
    option <- paste0("--", gsub("_", "-", name))
    if (name %in% flags) {
      if (isTRUE(value)) option
    } else if (is.logical(value)) {
      c(option, if (isTRUE(value)) "yes" else "no")
    } else if (is.numeric(value)) {
      c(option, format(value, digits = 15, scientific = FALSE, trim = TRUE))
    } else {
      as.vector(rbind(option, as.character(value)))
    }
  }))
}

# A folder of the R session's that is gone when the caller leaves with an error.
new_folder <- function(pattern) {
  folder <- tempfile(pattern)
  if (!dir.create(folder)) {
    stop("The folder ", folder, " cannot be made.", call. = FALSE)
  }
  folder
}

# Evaluates `code` and takes `folder` away unless it comes to its end.
keep_if_done <- function(folder, code) {
  done <- FALSE
  on.exit(if (!done) unlink(folder, recursive = TRUE))
  value <- force(code)
  done <- TRUE
  value
}

user_folder <- function(folder) {
  if (!dir.exists(folder) && !dir.create(folder, recursive = TRUE)) {
    stop("The folder ", folder, " cannot be made.", call. = FALSE)
  }
  normalizePath(folder)
}
