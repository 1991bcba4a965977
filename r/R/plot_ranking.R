#' Picture of a ranking
#'
#' The best value of each size, and the best subsets with their traits as dots.
#' @param x a ranking.
#' @param n number of subsets to show.
#' @param cex size of the labels.
#' @param ... for the left panel.
#' @return The tables of the picture, invisibly.
#' @examples
#' r <- read_tessel(system.file("extdata", "ranking", package = "tessel"))
#' plot(r)
#' @export
plot.tessel_ranking <- function(x, n = 20, cex = 0.8, ...) {
  best <- x$tables$best
  ranked <- utils::head(x$tables$ranked, n)
  test <- x$tables$test
  members <- as.matrix(ranked[first_trait_column(ranked):ncol(ranked)])
  shown <- ncol(members)
  old <- graphics::par(mar = c(4, 4.2, 3, 1), mgp = c(2.6, 0.7, 0))
  on.exit({
    graphics::layout(1)
    graphics::par(old)
  })
  graphics::layout(matrix(1:2, 1), widths = c(1, 1.4))
  graphics::plot(best$size, best$value,
    type = "b", pch = 19, col = colour_of("blue"), xlab = "traits in the subset",
    ylab = paste0("best r(", x$settings[["criterion"]], ")"), xaxt = "n", ...
  )
  graphics::title(main = "Best of each size", cex.main = 1, line = 1.4)
  graphics::axis(1, best$size)
  if (!is.null(test)) {
    sized <- test[test$size %in% best$size, ]
    significant <- sized$P <= 0.05
    graphics::points(sized$size[significant], sized$value[significant],
      cex = 2, col = colour_of("red"), lwd = 2
    )
    graphics::mtext("ring: P <= 0.05, after the choice",
      line = 0.2, cex = cex, col = colour_of("red")
    )
  }
  rows <- nrow(members)
  bottom <- margin_for(colnames(members), cex)
  graphics::par(mar = c(bottom, 4.6, 3, 1))
  graphics::plot(NULL,
    xlim = c(0.5, shown + 0.5), ylim = c(rows + 0.5, 0.5), axes = FALSE, xlab = "", ylab = ""
  )
  graphics::title(main = paste("The", rows, "best subsets"), cex.main = 1, line = 1.4)
  graphics::abline(h = seq_len(rows), v = seq_len(shown), col = "grey92")
  graphics::points(col(members)[members == 1], row(members)[members == 1],
    pch = 19, cex = 1.2, col = colour_of("blue")
  )
  graphics::axis(1, seq_len(shown), shorten(colnames(members)),
    las = 2, tick = FALSE, cex.axis = cex
  )
  every <- fitting(rows, cex, 2)
  graphics::axis(2, every, format(signif(ranked$value[every], 3)),
    las = 1, tick = FALSE, cex.axis = cex
  )
  invisible(list(best = best, ranked = ranked))
}
