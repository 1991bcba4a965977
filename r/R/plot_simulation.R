#' Picture of rates of rejection
#'
#' With confidence limits; of several simulations along sites, the strength of the
#' filter or whatever they differ in.
#' @param x a simulation.
#' @param ... more simulations.
#' @param along a number for each simulation.
#' @param statistics the statistics to show.
#' @param xlab what `along` is.
#' @return The rates, invisibly.
#' @examples
#' s <- read_tessel(system.file("extdata", "simulation", package = "tessel"))
#' plot(s)
#' @export
plot.tessel_simulation <- function(x, ..., along = NULL, statistics = NULL,
                                   xlab = "simulation") {
  others <- list(...)
  runs <- c(list(x), others[vapply(others, inherits, logical(1), "tessel_simulation")])
  if (is.null(along)) along <- seq_along(runs)
  if (length(along) != length(runs)) {
    stop("`along` must have a value for each of the ", length(runs), " simulations.", call. = FALSE)
  }
  rates <- do.call(rbind, lapply(seq_along(runs), function(i) {
    cbind(position = along[[i]], runs[[i]]$tables$rates)
  }))
  if (is.null(statistics)) {
    statistics <- unique(rates$statistic[!grepl("[YZ]", rates$statistic)])
  }
  rates <- rates[rates$statistic %in% statistics, ]
  draw <- if (length(runs) == 1) draw_rates else draw_rates_along
  with_par(list(mar = c(4, 5.5, 2.4, 1), mgp = c(2.4, 0.7, 0)), draw(rates, statistics, xlab))
  invisible(rates)
}

draw_rates <- function(rates, statistics, ...) {
  place <- rev(seq_along(statistics))
  rates <- rates[match(statistics, rates$statistic), ]
  graphics::plot(rates$rate, place,
    xlim = c(0, 1), ylim = c(0.5, length(statistics) + 0.5), pch = 19, col = colour_of("blue"),
    xlab = "rate of rejection", ylab = "", yaxt = "n", cex.main = 1,
    main = sprintf("%d data sets, alpha %g", rates[["data sets"]][1], rates$alpha[1])
  )
  graphics::segments(rates[["lower limit"]], place, rates[["upper limit"]], place,
    col = colour_of("blue"), lwd = 2
  )
  graphics::abline(v = rates$alpha[1], lty = 2, col = colour_of("red"))
  graphics::axis(2, place, statistics, las = 1, tick = FALSE)
}

# One line a statistic along the sites, the strength of the filter, ...
draw_rates_along <- function(rates, statistics, xlab) {
  # Yellow is hard to see on white.
  colours <- rep_len(grDevices::palette.colors(8, "Okabe-Ito")[-5], length(statistics))
  spread <- diff(range(rates$position))
  graphics::plot(NULL,
    xlim = range(rates$position) + c(-0.03, 0.03) * spread, ylim = c(0, 1),
    xlab = xlab, ylab = "rate of rejection"
  )
  for (k in seq_along(statistics)) {
    own <- rates[rates$statistic == statistics[k], ]
    own <- own[order(own$position), ]
    # Beside one another, so that the limits can be told apart.
    at <- own$position + (k - (length(statistics) + 1) / 2) * 0.006 * spread
    graphics::lines(at, own$rate, type = "b", pch = 14 + k, col = colours[k], lwd = 2)
    graphics::segments(at, own[["lower limit"]], at, own[["upper limit"]], col = colours[k])
  }
  graphics::abline(h = rates$alpha[1], lty = 2)
  usr <- graphics::par("usr")
  graphics::legend(mean(usr[1:2]), usr[4],
    xjust = 0.5, yjust = 0, horiz = TRUE, xpd = NA, bty = "n", legend = statistics,
    col = colours, pch = 14 + seq_along(statistics), lwd = 2, cex = 0.8
  )
}
