# The pair estimates are maximum-likelihood ones, as R/qtl's est.rf is; its EM runs here to a
# tight tolerance, since F2 pairs with dominant or recessive markers converge slowly. The
# library's frequency may pass 1/2 where est.rf stops at it, so the pairs below 0.45 are
# compared. R/qtl gives recombinant inbred lines the lines' own fraction R; the library gives
# the single-meiosis r of selfed lines, R = 2r / (1 + 2r).
with_partial_markers <- function(cross) {
  # Per chromosome one marker dominant (AA or AB seen as one class) and one recessive.
  for (ch in seq_along(cross$geno)) {
    d <- cross$geno[[ch]]$data
    d[, 2][d[, 2] %in% 1:2] <- 4
    d[, 5][d[, 5] %in% 2:3] <- 5
    cross$geno[[ch]]$data <- d
  }
  cross
}
as_dh <- function(cross) {
  class(cross)[1] <- "dh"
  cross
}
cases <- list(
  bc = list(cross = function() simulated_cross("bc", seed = 11), scale = identity),
  f2 = list(cross = function() simulated_cross("f2", seed = 11), scale = identity),
  f2_partial = list(cross = function() with_partial_markers(simulated_cross("f2", seed = 11)), scale = identity),
  dh = list(cross = function() as_dh(simulated_cross("bc", seed = 12)), scale = identity),
  riself = list(cross = function() simulated_cross("riself", seed = 13), scale = function(R) R / (2 - 2 * R)))

for (name in names(cases)) {
  test_that(paste("gae_pairs equals est.rf on a simulated", name), {
    skip_if_not_installed("qtl")
    if (!is.null(cases[[name]]$known)) skip(cases[[name]]$known)
    cross <- cases[[name]]$cross()
    pairs <- gae_pairs(cross, progress = FALSE)
    est <- suppressWarnings(qtl::est.rf(cross, tol = 1e-9, maxit = 1e5))
    markers <- colnames(pairs$rf)
    expect_identical(rownames(pairs$lod), markers)
    rf <- cases[[name]]$scale(unclass(qtl::pull.rf(est))[markers, markers])
    lod <- unclass(qtl::pull.rf(est, what = "lod"))[markers, markers]
    compared <- upper.tri(rf) & pairs$rf < 0.45
    expect_gt(sum(compared), 60)
    expect_equal(pairs$rf[compared], rf[compared], tolerance = 1e-4, ignore_attr = TRUE)
    expect_equal(pairs$lod[compared], lod[compared], tolerance = 1e-4, ignore_attr = TRUE)
    expect_equal(pairs$rf, t(pairs$rf))
  })
}
