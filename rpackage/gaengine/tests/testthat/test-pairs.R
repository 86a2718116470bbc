# The pair estimates are maximum-likelihood ones, as R/qtl's est.rf is for backcrosses and F2
# of co-dominant markers; the library's frequency may pass 1/2 where est.rf stops at it, so the
# comparison takes the pairs below 0.45.
for (type in c("bc", "f2")) {
  test_that(paste("gae_pairs equals est.rf on a simulated", type), {
    skip_if_not_installed("qtl")
    cross <- simulated_cross(type, seed = 11)
    pairs <- gae_pairs(cross, progress = FALSE)
    est <- qtl::est.rf(cross)
    markers <- colnames(pairs$rf)
    expect_identical(rownames(pairs$lod), markers)
    rf <- unclass(qtl::pull.rf(est))[markers, markers]
    lod <- unclass(qtl::pull.rf(est, what = "lod"))[markers, markers]
    compared <- upper.tri(rf) & pairs$rf < 0.45
    expect_gt(sum(compared), 100)
    expect_equal(pairs$rf[compared], rf[compared], tolerance = 1e-4, ignore_attr = TRUE)
    expect_equal(pairs$lod[compared], lod[compared], tolerance = 1e-4, ignore_attr = TRUE)
    expect_equal(pairs$rf, t(pairs$rf))
  })
}
