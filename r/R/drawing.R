# What the pictures share: colours that colour-blind readers tell apart, and
# labels that keep clear of one another.

colour_of <- function(name) {
  unname(grDevices::palette.colors(9, "Okabe-Ito")[c(
    ink = 1, orange = 2, sky = 3, green = 4, yellow = 5, blue = 6, red = 7,
    purple = 8, grey = 9
  )[name]])
}

with_par <- function(settings, code) {
  old <- graphics::par(settings)
  on.exit(graphics::par(old))
  force(code)
}

# Boxes of labels around points: each label takes the first place around its
# point where it meets no other label and stays in the panel; a label without
# room is left out where `crowded` says so, else it stands above its point.
place_labels <- function(x, y, labels, cex = 0.7, crowded = TRUE) {
  usr <- graphics::par("usr")
  width <- graphics::strwidth(labels, cex = cex) * 1.04
  height <- graphics::strheight(labels, cex = cex) * 1.35
  dx <- graphics::strwidth("m", cex = cex) * 0.7
  dy <- graphics::strheight("m", cex = cex) * 0.9
  places <- list(
    c(0, 1), c(1, 0), c(-1, 0), c(0, -1), c(1, 1), c(-1, 1), c(1, -1),
    c(-1, -1)
  )
  boxes <- matrix(numeric(), ncol = 4)
  at <- matrix(NA_real_, length(x), 2)
  for (i in seq_along(x)) {
    for (place in places) {
      centre <- c(
        x[i] + place[1] * (dx + width[i] / 2),
        y[i] + place[2] * (dy + height[i] / 2)
      )
      box <- c(
        centre[1] - width[i] / 2, centre[1] + width[i] / 2,
        centre[2] - height[i] / 2, centre[2] + height[i] / 2
      )
      inside <- box[1] >= usr[1] && box[2] <= usr[2] && box[3] >= usr[3] && box[4] <= usr[4]
      free <- !any(boxes[, 1] < box[2] & boxes[, 2] > box[1] &
        boxes[, 3] < box[4] & boxes[, 4] > box[3])
      if (inside && free) {
        at[i, ] <- centre
        boxes <- rbind(boxes, box)
        break
      }
    }
    if (is.na(at[i, 1]) && !crowded) at[i, ] <- c(x[i], y[i] + dy)
  }
  at
}

draw_labels <- function(x, y, labels, cex = 0.7, col = colour_of("ink"), crowded = TRUE) {
  at <- place_labels(x, y, labels, cex, crowded)
  shown <- !is.na(at[, 1])
  graphics::text(at[shown, 1], at[shown, 2], labels[shown], cex = cex, col = col)
  invisible(shown)
}

# A margin, in lines, in which the longest of the labels has room.
margin_for <- function(labels, cex, least = 4, most = 14) {
  inches <- max(graphics::strwidth(labels, units = "inches", cex = cex))
  min(most, max(least, inches / graphics::par("csi") + 1.5))
}

grid_of_panels <- function(n) {
  columns <- ceiling(sqrt(n))
  c(ceiling(n / columns), columns)
}
