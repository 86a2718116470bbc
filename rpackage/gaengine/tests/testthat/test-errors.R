test_that("bad arguments and refused files give R errors and the session goes on", {
  skip_if_not_installed("qtl")
  cross <- simulated_cross("bc", n_ind = 30, seed = 4)
  cases <- list(
    list(quote(gae_from_rqtl(simulated_cross("risib", n_ind = 30))), "not supported"),
    list(quote(gae_from_rqtl(data.frame(a = 1))), "R/qtl cross"),
    list(quote(gae_map(cross, seed = "abc")), "'seed' must be"),
    list(quote(gae_map(cross, seed = 1.5)), "'seed' must be"),
    list(quote(gae_map(cross, lod = "high")), "'lod' must be"),
    list(quote(gae_map(cross, max_rf = -1)), "'max_rf' must be"),
    list(quote(gae_map(cross, colour = "red")), "unknown argument"),
    list(quote(gae_pairs(cross, threads = 0)), "'threads' must be"),
    list(quote(gae_read(tempfile(fileext = ".map"))), "no such file"))
  for (case in cases) expect_error(eval(case[[1]]), case[[2]])

  # A file the library's reader refuses: its own words and code come back as the error.
  file <- tempfile(fileext = ".map")
  x <- gae_from_rqtl(cross)
  gae_write(x, file)
  text <- readLines(file)
  row <- grep(paste0("^", colnames(x$geno)[1], " "), text)
  text[row] <- sub(" [AH] ", " Q ", text[row])
  writeLines(text, file)
  expect_error(gae_read(file), "library code 22")
  file.copy(file, txt <- tempfile(fileext = ".txt"))
  expect_error(gae_read(txt), "cannot tell the tool")

  expect_warning(gae_from_rqtl(simulated_cross("bc", n_ind = 30, include_x = TRUE)), "X chromosome")
  expect_s3_class(gae_map(cross, progress = FALSE), "gae_map")
})
