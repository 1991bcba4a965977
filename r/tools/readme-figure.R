# Makes docs/figures/aravo-null.png, the README's picture. To be run in the repository's root, with
# the package installed and the program found:
#   Rscript r/tools/readme-figure.R
library(tessel)

alps <- function(file) {
  read.csv(file.path("examples/aravo", file), row.names = 1, check.names = FALSE)
}
d <- tessel_data(alps("traits.csv"), alps("communities.csv"), alps("environment.csv"))
a <- tessel_analyse(d, iterations = 9999, seed = 1)
png("docs/figures/aravo-null.png", width = 900, height = 280, res = 110)
par(cex = 0.9)
plot(a, statistics = c("TE", "XE", "XE.T"))
invisible(dev.off())
