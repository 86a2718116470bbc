for (type in c("bc", "f2")) {
  test_that(paste("the LOD tree and the map group a", type, "as formLinkageGroups does"), {
    skip_if_not_installed("qtl")
    cross <- simulated_cross(type, seed = 5)
    x <- gae_from_rqtl(cross)
    tree <- gae_lod_tree(x, progress = FALSE)
    est <- qtl::est.rf(cross)
    for (lod in c(2, 4, 6, 9)) {
      rqtl <- qtl::formLinkageGroups(est, max.rf = 0.5, min.lod = lod)
      ours <- attr(tree, "membership")[rownames(rqtl), as.character(lod)]
      expect_true(same_partition(ours, rqtl$LG), label = paste("groups at LOD", lod))
    }
    expect_equal(sum(tree$chosen), 1)
    # The map without a threshold takes the one the tree shows.
    expect_equal(gae_map(x, progress = FALSE)$lod, attr(tree, "choice")$lod)
    m <- gae_map(x, lod = 3, progress = FALSE)
    rqtl <- qtl::formLinkageGroups(est, max.rf = 0.5, min.lod = 3)
    placed <- setNames(m$map$group, m$map$marker)[rownames(rqtl)]
    expect_true(same_partition(placed, rqtl$LG))
    # The simulated chromosomes are far apart and dense enough to come out whole.
    expect_true(same_partition(placed, x$chr[match(rownames(rqtl), colnames(x$geno))]))
  })
}
