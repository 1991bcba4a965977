# Running the program in a folder.

# Its one line of failure becomes an R error, its warnings R warnings; what it
# prints on the screen is the value. The program is a child in the foreground,
# so that an interrupt in R ends it too. Where a person looks on, its progress
# goes to the terminal, and its words come from the file of messages.
run_program <- function(arguments, folder) {
  path <- checked_path()
  screen <- tempfile("screen")
  messages <- tempfile("messages")
  on.exit(unlink(c(screen, messages)))
  here <- setwd(folder)
  on.exit(setwd(here), add = TRUE)
  watched <- interactive() && keeps_messages(path, arguments[[1]])
  arguments <- c(arguments, if (watched) c("--messages", messages) else quiet_for(arguments[[1]]))
  status <- suppressWarnings(system2(path, shQuote(arguments),
    stdout = screen, stderr = if (watched) "" else messages, stdin = "/dev/null"
  ))
  said <- read_utf8(messages)
  warned <- grepl("^TESSEL: warning: ", said)
  if (status != 0) fail_as_program(said[!warned & nzchar(said)], status)
  for (line in said[warned]) {
    warning(as_arguments(sub("^TESSEL: warning: ", "", line)), call. = FALSE)
  }
  read_utf8(screen)
}

# The commands whose screen and progress nobody reads.
quiet_for <- function(command) {
  if (command %in% c("analyse", "rank", "simulate")) "--quiet"
}

# Whether the program writes its warnings and failures to a file too; asked once.
keeps_messages <- function(path, command) {
  stamp <- paste(path, file.mtime(path), command)
  if (is.null(checked_programs[[stamp]])) {
    help <- suppressWarnings(system2(path, c(command, "--help"),
      stdout = TRUE, stderr = TRUE, stdin = "/dev/null"
    ))
    assign(stamp, any(grepl("--messages", help, fixed = TRUE)), envir = checked_programs)
  }
  checked_programs[[stamp]]
}

fail_as_program <- function(lines, status) {
  words <- as_arguments(sub("^TESSEL: ", "", paste(lines, collapse = "\n")))
  if (!nzchar(words)) {
    words <- paste0("TESSEL was interrupted or stopped (status ", status, ")")
  }
  stop(structure(
    class = c("tessel_error", "error", "condition"),
    list(message = words, call = NULL, status = status)
  ))
}

# The program's words, with its options named as the arguments are here.
as_arguments <- function(words) {
  found <- gregexpr("(?<![^ ])--[a-z]+(-[a-z]+)*", words, perl = TRUE)
  regmatches(words, found) <- lapply(regmatches(words, found), function(options) {
    ifelse(options == "--help", options, paste0("`", gsub("-", "_", substring(options, 3)), "`"))
  })
  words
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
    check_value(name, value, name %in% flags)
    option <- option_name(name)
    if (name %in% flags) {
      if (value) option
    } else if (is.logical(value)) {
      c(option, if (value) "yes" else "no")
    } else if (is.numeric(value)) {
      c(option, format(value, digits = 15, scientific = FALSE, trim = TRUE))
    } else {
      as.vector(rbind(option, as.character(value)))
    }
  }))
}

option_name <- function(name) paste0("--", gsub("_", "-", name))

# What could not be said on a command line.
check_value <- function(name, value, is_flag) {
  must_be <- if (!is.atomic(value) || length(value) == 0) {
    "one value, or several names"
  } else if (anyNA(value)) {
    "known: it is NA"
  } else if (is_flag && !is.logical(value)) {
    "TRUE or FALSE"
  } else if (!is.character(value) && !is.factor(value) && length(value) > 1) {
    "one value"
  }
  if (!is.null(must_be)) stop("`", name, "` must be ", must_be, ".", call. = FALSE)
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
