# The R package against R/qtl on R/qtl's own data sets (X chromosomes left out): linkage groups
# against formLinkageGroups at the same LOD and frequency cap, the order's obligate crossovers
# against orderMarkers (with its ripple), group by group the log-likelihood of both orders under
# R/qtl's own est.map (at our error rate), and the time of each.
# Run: Rscript bench/rqtl_comparison.R [library folder holding gaengine]
args <- commandArgs(trailingOnly = TRUE)
suppressMessages(library(qtl))
library(gaengine, lib.loc = if (length(args)) args[1] else NULL)

same_partition <- function(a, b) {
  # Two labelings of the same markers split them alike when each label pairs with one other.
  t <- table(as.character(a), as.character(b))
  all(rowSums(t > 0) == 1) && all(colSums(t > 0) == 1)
}

for (name in c("hyper", "listeria", "fake.bc", "fake.f2")) {
  data(list = name, package = "qtl")
  cross <- get(name)
  auto <- names(cross$geno)[vapply(cross$geno, function(g) !inherits(g, "X"), logical(1))]
  cross <- subset(cross, chr = auto)
  gae_time <- system.time(m <- suppressWarnings(gae_map(cross, progress = FALSE)))[["elapsed"]]
  fl <- formLinkageGroups(est.rf(cross), max.rf = m$max_rf, min.lod = m$lod)
  # Markers without a genotype are left out of the package's data; R/qtl keeps each alone.
  kept <- rownames(fl) %in% m$map$marker
  ours <- setNames(m$map$group, m$map$marker)[rownames(fl)[kept]]
  groups_equal <- same_partition(ours, fl$LG[kept])

  # R/qtl's own map: its groups, each ordered with orderMarkers (ripple included).
  rqtl_time <- system.time({
    grouped <- formLinkageGroups(est.rf(cross), max.rf = m$max_rf, min.lod = m$lod, reorgMarkers = TRUE)
    ordered <- orderMarkers(grouped, use.ripple = TRUE, verbose = FALSE)
  })[["elapsed"]]
  ours_cross <- as_rqtl_cross(m, cross)
  ours_xo <- sum(countXO(ours_cross))
  rqtl_xo <- sum(countXO(ordered))
  # Each of R/qtl's groups of three markers or more against our group holding the same markers.
  worse_xo <- 0L
  worse_lik <- 0L
  deficit <- 0
  for (g in names(ordered$geno)) {
    theirs <- colnames(ordered$geno[[g]]$data)
    if (length(theirs) < 3) next
    mine <- names(which.max(table(m$map$group[m$map$marker %in% theirs])))
    mine <- m$map$marker[m$map$group == mine]
    if (!setequal(mine, theirs)) next
    one <- subset(ordered, chr = g)
    two <- switch.order(one, g, match(mine, theirs))
    worse_xo <- worse_xo + (sum(countXO(two)) > sum(countXO(one)))
    e <- max(m$error_rate, 1e-4)
    gap <- attr(est.map(two, error.prob = e)[[1]], "loglik") - attr(est.map(one, error.prob = e)[[1]], "loglik")
    if (gap < -1e-3) {
      worse_lik <- worse_lik + 1L
      deficit <- min(deficit, gap)
    }
  }
  cat(sprintf("%-9s %d markers left out; groups %2d vs %2d (LOD %.0f, same: %s)  crossovers %5d vs %5d  time %.2f s vs %.2f s (%.3f)\n",
              name, sum(!kept), length(unique(ours)), length(unique(fl$LG[kept])), m$lod, groups_equal, ours_xo, rqtl_xo,
              gae_time, rqtl_time, gae_time / rqtl_time))
  cat(sprintf("          groups with more crossovers than R/qtl's order: %d; less likely under est.map: %d (worst by %.2f ln)\n",
              worse_xo, worse_lik, deficit))
}
