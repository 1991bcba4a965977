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

# The directions in which a label may stand from its point.
label_places <- rbind(
  c(0, 1), c(1, 0), c(-1, 0), c(0, -1), c(1, 1), c(-1, 1), c(1, -1), c(-1, -1)
)

# Where labels have room: each takes the first place around its point where it
# meets no other label, covers none of the `blocked` points (two columns) and
# stays in the panel. `outward` tries the places away from the origin first,
# then those further off, of which there are so many `rings`; a label without
# room has NA, or where `must` says so a place that avoids other labels at least.
place_labels <- function(x, y, labels, cex = 0.7, blocked = NULL,
                         boxes = matrix(numeric(), ncol = 4),
                         rings = 1, outward = FALSE, must = FALSE) {
  usr <- graphics::par("usr")
  width <- graphics::strwidth(labels, cex = cex) * 1.04
  height <- graphics::strheight(labels, cex = cex) * 1.35
  dx <- graphics::strwidth("m", cex = cex) * 0.4
  dy <- graphics::strheight("m", cex = cex) * 0.5
  at <- matrix(NA_real_, length(x), 2)
  for (i in seq_along(x)) {
    places <- label_places
    if (outward) {
      away <- places %*% c(x[i], y[i]) / sqrt(rowSums(places^2))
      places <- places[order(-away), ]
    }
    places <- do.call(rbind, lapply(seq_len(rings), function(ring) ring * places))
    boxes_of <- cbind(
      x[i] + places[, 1] * dx + (sign(places[, 1]) - 1) * width[i] / 2,
      x[i] + places[, 1] * dx + (sign(places[, 1]) + 1) * width[i] / 2,
      y[i] + places[, 2] * dy + (sign(places[, 2]) - 1) * height[i] / 2,
      y[i] + places[, 2] * dy + (sign(places[, 2]) + 1) * height[i] / 2
    )
    inside <- boxes_of[, 1] >= usr[1] & boxes_of[, 2] <= usr[2] &
      boxes_of[, 3] >= usr[3] & boxes_of[, 4] <= usr[4]
    clear <- inside & apply(boxes_of, 1, function(box) !meets(box, boxes))
    free <- clear & apply(boxes_of, 1, function(box) !covers(box, blocked))
    chosen <- c(which(free), if (must) c(which(clear), which(inside), 1))
    if (length(chosen) == 0) next
    box <- boxes_of[chosen[1], ]
    at[i, ] <- c(mean(box[1:2]), mean(box[3:4]))
    boxes <- rbind(boxes, box)
  }
  list(at = at, boxes = boxes)
}

meets <- function(box, boxes) {
  any(boxes[, 1] < box[2] & boxes[, 2] > box[1] & boxes[, 3] < box[4] & boxes[, 4] > box[3])
}

covers <- function(box, points) {
  any(points[, 1] > box[1] & points[, 1] < box[2] & points[, 2] > box[3] & points[, 2] < box[4])
}

# Points along arrows from the origin, so that labels keep clear of them.
along_arrows <- function(ends) {
  steps <- seq(0, 1, by = 0.02)
  cbind(c(outer(steps, ends[, 1])), c(outer(steps, ends[, 2])))
}

shorten <- function(names, longest = 28) {
  ifelse(nchar(names) > longest, paste0(substr(names, 1, longest - 3), "..."), names)
}

# A margin, in lines, in which the longest of the labels has room.
margin_for <- function(labels, cex, least = 3, most = 14) {
  inches <- max(graphics::strwidth(shorten(labels), units = "inches", cex = cex))
  min(most, max(least, inches / graphics::par("csi") + 1.5))
}

# The size of a title that fits above its panel.
title_size <- function(title, most = 1) {
  most * min(1, graphics::par("fin")[1] * 0.95 /
    graphics::strwidth(title, units = "inches", cex = most, font = 2))
}

# Three panels stand in a row, others as near to a square as they go.
grid_of_panels <- function(n) {
  columns <- if (n == 3) 3 else ceiling(sqrt(n))
  c(ceiling(n / columns), columns)
}
