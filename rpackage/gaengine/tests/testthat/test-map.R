test_that("gae_map orders each simulated chromosome and hands R/qtl a map it can use", {
  skip_if_not_installed("qtl")
  cross <- simulated_cross("bc", n_ind = 200, seed = 3, error_prob = 0.01)
  m <- gae_map(cross, seed = 7, progress = FALSE)
  expect_named(m$map, c("group", "marker", "position", "interval"))
  truth <- unlist(lapply(qtl::pull.map(cross), function(chrom) chrom))
  names(truth) <- unlist(lapply(qtl::pull.map(cross), names))
  for (g in split(m$map, m$map$group)) {
    expect_true(all(diff(g$position) >= 0))
    expect_equal(g$interval, c(0, diff(g$position)), tolerance = 1e-6)
    # The order found follows the simulated one, read either way.
    expect_gt(abs(cor(truth[g$marker], seq_along(g$marker), method = "spearman")), 0.95)
  }
  expect_true(is.na(m$error_rate) || (m$error_rate >= 0 && m$error_rate < 0.5))
  expect_true(all(m$suspects$marker %in% m$map$marker))
  expect_identical(gae_map(cross, seed = 7, progress = FALSE)$map, m$map)

  rmap <- as_rqtl_map(m)
  expect_s3_class(rmap, "map")
  pdf(file.path(tempdir(), "map.pdf"))
  expect_silent(qtl::plotMap(rmap))
  dev.off()
  reordered <- qtl::replace.map(as_rqtl_cross(m, cross), rmap)
  expect_equal(unname(unlist(qtl::pull.map(reordered))), unname(unlist(rmap)))
  expect_equal(qtl::nind(reordered), qtl::nind(cross))
})

test_that("a data set written through the library's writer reads back as it was", {
  skip_if_not_installed("qtl")
  cross <- simulated_cross("f2", n_ind = 40, seed = 2)
  cross$geno[[1]]$data[1:5, 1] <- 4  # dominant calls beside full ones are set to missing
  expect_warning(x <- gae_from_rqtl(cross), "partly informative")
  file <- tempfile(fileext = ".map")
  gae_write(x, file)
  back <- gae_read(file)
  expect_identical(back$geno, x$geno)
  expect_identical(back$categories, x$categories)
  expect_identical(back$population_type, 7L)
  expect_identical(unname(x$geno[1:5, 1]), rep("X", 5))
})

test_that("the suspect genotypes are mostly the calls flipped in an error-free simulation", {
  skip_if_not_installed("qtl")
  set.seed(8)
  map <- qtl::sim.map(len = rep(60, 2), n.mar = 30, include.x = FALSE, eq.spacing = TRUE)
  cross <- qtl::sim.cross(map, n.ind = 150, type = "bc", error.prob = 0)
  flipped <- character(0)
  for (k in 1:40) {
    ch <- 1 + k %% 2
    i <- sample(150, 1)
    j <- sample(30, 1)
    cross$geno[[ch]]$data[i, j] <- 3 - cross$geno[[ch]]$data[i, j]
    flipped <- c(flipped, paste(colnames(cross$geno[[ch]]$data)[j], i))
  }
  flipped <- unique(flipped)
  m <- gae_map(cross, seed = 1, progress = FALSE)
  found <- paste(m$suspects$marker, m$suspects$individual)
  expect_gt(mean(flipped %in% found), 0.6)
  expect_gt(mean(found %in% flipped), 0.6)
})
