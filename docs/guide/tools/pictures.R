# Draws the pictures of the guide, docs/guide/pictures/*.png, with the settings that its second
# chapter shows. Run by scripts/build-guide.sh --pictures, in the repository's root.
library(tessel)

folder <- "docs/guide/pictures"
picture <- function(name, width, height, drawing) {
  png(file.path(folder, paste0(name, ".png")),
    width = width, height = height, units = "in", res = 110, type = "cairo"
  )
  on.exit(dev.off())
  force(drawing)
}
table_of <- function(study, file) {
  read.csv(file.path("examples", study, file), row.names = 1, check.names = FALSE)
}

# What is computed from what.
scheme <- function() {
  par(mar = c(0, 0, 0, 0))
  plot(NULL, xlim = c(0, 110), ylim = c(-3, 61), axes = FALSE, xlab = "", ylab = "")
  box_at <- function(x, y, letter, text, colour) {
    rect(x - 15, y - 5.5, x + 15, y + 5.5, col = colour, border = "grey40")
    text(x, y + 1.9, letter, font = 2, cex = 1.1)
    text(x, y - 2.4, text, cex = 0.75)
  }
  arrow <- function(x0, y0, x1, y1) arrows(x0, y0, x1, y1, length = 0.07, col = "grey30")
  given <- "#dbe9f6"
  made <- "#fdebd0"
  box_at(16, 54, "B", "OTUs by traits", given)
  box_at(16, 38, "W", "communities by OTUs", given)
  box_at(16, 22, "F", "phylogeny of the OTUs", given)
  box_at(16, 6, "E", "communities by variables", given)
  box_at(58, 54, "T = W B", "mean traits", made)
  box_at(58, 38, "X = W U, R", "kinds of traits, their diversity", made)
  box_at(58, 22, "P = W Q", "kinds by phylogeny", made)
  arrow(31.5, 54, 42.5, 54)
  arrow(31.5, 40, 42.5, 51)
  arrow(31.5, 38, 42.5, 38)
  arrow(31.5, 52, 42.5, 41)
  arrow(31.5, 36, 42.5, 25)
  arrow(31.5, 22, 42.5, 22)
  rect(84, -1, 109.5, 60, border = "grey40")
  answers <- rbind(
    c("r(TE)", "convergence"), c("r(XE)", "both"), c("r(XE.T)", "divergence"),
    c("r(RE)", "diversity"), c("r(PE)", "phylogeny")
  )
  height <- seq(52, 8, length.out = 5)
  text(86, height + 1.6, answers[, 1], adj = 0, cex = 0.95, font = 2)
  text(86, height - 2, answers[, 2], adj = 0, cex = 0.75)
  arrow(73.5, 54, 83.5, 52)
  arrow(73.5, 38, 83.5, 36)
  arrow(73.5, 22, 83.5, 20)
  arrow(31.5, 6, 83.5, 6)
}
picture("scheme", 7.5, 4.4, scheme())

d <- tessel_data(
  table_of("aravo", "traits.csv"), table_of("aravo", "communities.csv"),
  table_of("aravo", "environment.csv")
)
a <- tessel_analyse(d, iterations = 10000, seed = 1)
picture("alps-null", 7.5, 2.4, plot(a, statistics = c("TE", "XE", "XE.T")))
picture("alps-traits", 7, 6.2, plot(a, "ordination", by = "T", labels = FALSE))
picture("alps-resemblance", 5, 4, plot(a, "resemblance", a = "DE", b = "DX"))
picture(
  "alps-diversity", 7.5, 2.6,
  plot(a, "diversity", along = "Snow", environment = table_of("aravo", "environment.csv"))
)
picture("alps-ranking", 7.5, 4, plot(tessel_rank(d, criterion = "TE", sizes = "1-6", test = 999, seed = 1)))

m <- tessel_data(
  table_of("mafragh", "traits.csv"), table_of("mafragh", "communities.csv"),
  table_of("mafragh", "environment.csv"),
  phylogeny = "examples/mafragh/phylogeny.nwk", ordinal = c("Succulence", "Spikiness", "HairyLeaf"),
  trait_groups = c(
    Anemogam = "pollination", Autogam = "pollination", Entomogam = "pollination",
    Annual = "cycle", Biennial = "cycle", Perennial = "cycle", Seasonal = "cycle"
  )
)
p <- tessel_analyse(m, iterations = 1000, seed = 1, weight_by_groups = TRUE)
picture("grassland-null", 7.5, 4.4, plot(p, statistics = c("BF", "PT", "PX", "PE", "TE", "XE.T")))
