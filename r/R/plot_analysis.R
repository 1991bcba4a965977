#' Pictures of a functional analysis
#'
#' `"null"`: null distributions with the observed values. `"ordination"`:
#' communities by the program's principal components of T or X, with arrows for
#' the correlations of traits (or types) and environment with the axes.
#' `"resemblance"`: resemblances of pairs of communities by two tables, which the
#' Mantel correlation compares. `"belonging"`: belonging of OTUs to types as
#' shades. `"diversity"`: diversity and redundancy of the communities along a
#' variable.
#' @param x an analysis.
#' @param type the picture.
#' @param ... for the picture: `statistics` and `breaks` (null); `by`, `labels`,
#'   `arrows` (how many) and `cex` (ordination); `a` and `b`, such as `"DE"` and `"DT"`
#'   (resemblance); `along`, a name or numbers, and `environment` (diversity).
#' @return The numbers of the picture, invisibly.
#' @examples
#' a <- read_tessel(system.file("extdata", "tables", package = "tessel"))
#' plot(a, statistics = c("TE", "XE", "XE.T"))
#' plot(a, "ordination")
#' plot(a, "resemblance", a = "DE", b = "DT")
#' @export
plot.tessel_analysis <- function(x, type = c(
                                   "null", "ordination", "resemblance",
                                   "belonging", "diversity"
                                 ), ...) {
  type <- match.arg(type)
  draw <- switch(type,
    null = plot_null,
    ordination = plot_ordination,
    resemblance = plot_resemblance,
    belonging = plot_belonging,
    diversity = plot_diversity
  )
  invisible(draw(x, ...))
}

# Null distributions with the observed values.
plot_null <- function(x, statistics = NULL, breaks = NULL, ...) {
  table <- x$tables$statistics
  if (is.null(statistics)) {
    statistics <- table$statistic[!grepl("[ZY]", table$statistic)]
  }
  unknown <- setdiff(statistics, table$statistic)
  if (length(unknown) > 0) {
    stop("The analysis has no statistic ", paste(unknown, collapse = ", "), "; it has ",
      paste(table$statistic, collapse = ", "), ".",
      call. = FALSE
    )
  }
  values <- null_values(x)
  with_par(list(
    mfrow = grid_of_panels(length(statistics)), mar = c(3.2, 1, 2.4, 1),
    mgp = c(1.9, 0.6, 0), tcl = -0.3
  ), for (statistic in statistics) {
    null <- values[-1, statistic]
    null <- null[is.finite(null)]
    row <- table[table$statistic == statistic, ]
    range <- range(c(null, row$value), na.rm = TRUE)
    title <- sprintf("r(%s) = %.3f, P = %.3g", statistic, row$value, row$P)
    if (length(null) == 0 || !is.finite(row$value)) {
      graphics::plot.new()
      graphics::title(main = sprintf("r(%s): not a number", statistic), cex.main = 1)
      next
    }
    bins <- if (is.null(breaks)) min(40, ceiling(1.3 * sqrt(length(null)))) else breaks
    graphics::hist(null,
      breaks = bins, xlim = range + c(-0.03, 0.03) * diff(range), col = colour_of("sky"),
      border = "white", main = "", xlab = paste0("r(", statistic, ")"),
      ylab = "", yaxt = "n"
    )
    graphics::title(main = title, cex.main = title_size(title))
    graphics::abline(v = row$value, col = colour_of("red"), lwd = 2.5)
  })
  values[, statistics, drop = FALSE]
}

table_matrix <- function(x, name) {
  table <- x$tables[[name]]
  if (is.null(table)) {
    stop("The analysis has no table ", name, ".csv; it has ",
      paste(names(x$tables), collapse = ", "), ".",
      call. = FALSE
    )
  }
  as_named_matrix(table)
}

# Communities on the first two principal components of T or X as the program has
# them, with arrows for the correlations of traits (or types) and environment.
plot_ordination <- function(x, by = c("T", "X"), labels = TRUE, cex = 0.7, arrows = 10, ...) {
  by <- match.arg(by)
  name <- paste0("ordination", by)
  table <- x$tables[[name]]
  if (is.null(table)) {
    stop("The analysis has no table ", name, ".csv: it needs a TESSEL that writes ",
      "ordinations, and at least two communities and columns of ", by, ".",
      call. = FALSE
    )
  }
  axes <- function(kind) {
    rows <- table[table$kind %in% kind, ]
    matrix(c(rows$axis1, rows$axis2), ncol = 2, dimnames = list(rows$name, c("axis1", "axis2")))
  }
  scores <- axes("community")
  columns <- axes(c("trait", "type"))
  longest <- order(-rowSums(columns^2))[seq_len(min(arrows, nrow(columns)))]
  environment <- axes("environment")
  result <- list(
    scores = scores, columns = columns, environment = environment, share = axes("share")
  )
  columns <- columns[longest, , drop = FALSE]
  both <- rbind(columns, environment)
  colours <- rep(
    c(colour_of("blue"), colour_of("red")), c(nrow(columns), nrow(environment))
  )
  known <- rowSums(is.na(both)) == 0
  both <- both[known, , drop = FALSE]
  colours <- colours[known]
  ends <- both * arrow_reach(both, scores)
  limits <- apply(rbind(scores, ends), 2, grDevices::extendrange, f = 0.07)
  with_par(list(mar = c(4, 4, 3.4, 1), mgp = c(2.4, 0.7, 0)), {
    graphics::plot(scores,
      asp = 1, xlim = limits[, 1], ylim = limits[, 2], pch = 19, cex = 0.6, col = "grey60",
      xlab = sprintf("Axis 1 (%.0f %%)", 100 * result$share[1, 1]),
      ylab = sprintf("Axis 2 (%.0f %%)", 100 * result$share[1, 2]), ...
    )
    graphics::abline(h = 0, v = 0, col = "grey90")
    draw_arrows(ends, colours)
    blocked <- rbind(scores, along_arrows(ends))
    placed <- place_labels(ends[, 1], ends[, 2], shorten(rownames(ends), 22),
      cex = cex, blocked = blocked, rings = 12, outward = TRUE, must = TRUE
    )
    graphics::text(placed$at, shorten(rownames(ends), 22), col = colours, cex = cex, font = 2)
    if (labels) {
      names <- shorten(rownames(scores), 16)
      at <- place_labels(scores[, 1], scores[, 2], names,
        cex = cex * 0.9, blocked = blocked, boxes = placed$boxes
      )$at
      room <- !is.na(at[, 1])
      graphics::text(at[room, , drop = FALSE], names[room], col = "grey40", cex = cex * 0.9)
    }
    # Above the panel, where no point can be.
    graphics::title(main = paste("Communities by", by), cex.main = 1, line = 2)
    graphics::mtext("communities", adj = 0, line = 0.4, cex = cex, col = "grey40")
    graphics::mtext(if (by == "T") "traits" else "types",
      adj = 0.5, line = 0.4, cex = cex, col = colour_of("blue")
    )
    if (nrow(environment) > 0) {
      graphics::mtext("environment", adj = 1, line = 0.4, cex = cex, col = colour_of("red"))
    }
  })
  result
}

# By how much arrows of correlations are drawn out to fill the cloud of points
# without leaving it.
arrow_reach <- function(ends, scores) {
  ratio <- apply(scores, 2, range) / apply(rbind(ends, 0), 2, range)
  0.9 * min(ratio[is.finite(ratio) & ratio > 0], Inf)
}

draw_arrows <- function(ends, colours) {
  long <- sqrt(rowSums(ends^2)) > 0
  graphics::arrows(0, 0, ends[long, 1], ends[long, 2],
    length = 0.07, col = colours[long], lwd = 1.6
  )
}

# Resemblances of pairs of communities by two tables: what the Mantel
# correlation measures.
plot_resemblance <- function(x, a = "DE", b = "DX", ...) {
  first <- table_matrix(x, a)
  second <- table_matrix(x, b)
  pairs <- lower.tri(first)
  values <- data.frame(a = first[pairs], b = second[pairs])
  names(values) <- c(a, b)
  r <- statistic_of(x, a, b)
  with_par(list(mar = c(4, 4, 2.4, 1), mgp = c(2.4, 0.7, 0)), {
    shade <- grDevices::adjustcolor(colour_of("blue"), max(0.2, min(0.6, 900 / nrow(values))))
    graphics::plot(values,
      pch = 19, cex = 0.5, col = shade, xlab = a, ylab = b,
      main = paste0("Pairs of communities", r), cex.main = 1, ...
    )
    graphics::lines(stats::lowess(values), col = colour_of("red"), lwd = 2)
  })
  values
}

# The program's own correlation of two tables, for a title, where there is one.
statistic_of <- function(x, a, b) {
  letters <- substring(c(a, b), 2)
  table <- x$tables$statistics
  names <- c(paste(letters, collapse = ""), paste(rev(letters), collapse = ""))
  row <- table[table$statistic %in% names, ]
  if (nrow(row) != 1 || !identical(x$settings[["congruence"]], "mantel")) {
    return("")
  }
  sprintf(": r(%s) = %.3f", row$statistic, row$value)
}

# Belonging of OTUs to types as shades.
plot_belonging <- function(x, cex = 0.6, ...) {
  belonging <- table_matrix(x, "U")
  with_par(list(mar = c(4, 4, 2.4, 1)), {
    graphics::plot.new()
    margins <- c(
      margin_for(colnames(belonging), cex), margin_for(rownames(belonging), cex), 2.4, 1
    )
    graphics::par(mar = margins, new = TRUE)
    shades <- grDevices::colorRampPalette(c("white", colour_of("blue")))(64)
    graphics::image(seq_len(ncol(belonging)), seq_len(nrow(belonging)),
      t(belonging[rev(seq_len(nrow(belonging))), , drop = FALSE]),
      col = shades, axes = FALSE, xlab = "", ylab = "",
      main = sprintf("Belonging to types, %.2g (white) to %.2g", min(belonging), max(belonging)),
      cex.main = 1, ...
    )
    shown <- fitting(nrow(belonging), cex, 2)
    graphics::axis(2, rev(seq_len(nrow(belonging)))[shown], shorten(rownames(belonging))[shown],
      las = 1, cex.axis = cex, tick = FALSE, line = -0.8
    )
    shown <- fitting(ncol(belonging), cex, 1)
    graphics::axis(1, seq_len(ncol(belonging))[shown], shorten(colnames(belonging))[shown],
      las = 2, cex.axis = cex, tick = FALSE, line = -0.8
    )
    graphics::box()
  })
  belonging
}

# Which of n rows or columns have room for a label: all, or every second, ...
fitting <- function(n, cex, side) {
  inches <- graphics::par("pin")[if (side == 2) 2 else 1]
  room <- inches / (graphics::par("csi") * cex * 1.05)
  seq(1, n, by = max(1, ceiling(n / room)))
}

# Diversity and redundancy of the communities along a variable.
plot_diversity <- function(x, along = NULL, environment = x$environment, ...) {
  table <- x$tables$communities
  indices <- table[-1]
  position <- seq_len(nrow(table))
  label <- "communities in their order"
  if (!is.null(environment) && (is.null(along) || is.character(along))) {
    if (is.null(along)) along <- names(environment)[vapply(environment, is.numeric, logical(1))][1]
    if (!along %in% names(environment)) {
      stop("The environment has no variable ", along, "; it has ",
        paste(names(environment), collapse = ", "), ".",
        call. = FALSE
      )
    }
    position <- environment[table[[1]], along]
    label <- along
  } else if (is.numeric(along)) {
    position <- along
    label <- "variable"
  }
  with_par(list(
    mfrow = grid_of_panels(ncol(indices)), mar = c(4, 4, 1.6, 1), mgp = c(2.4, 0.7, 0)
  ), for (index in names(indices)) {
    graphics::plot(position, indices[[index]],
      pch = 19, cex = 0.8, col = colour_of("blue"), xlab = label,
      ylab = gsub("_", " ", index), ...
    )
    known <- is.finite(position) & is.finite(indices[[index]])
    graphics::lines(stats::lowess(position[known], indices[[index]][known]),
      col = colour_of("red"), lwd = 2
    )
  })
  data.frame(community = table[[1]], position = position, indices, check.names = FALSE)
}
