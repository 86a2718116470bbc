library(testthat)
library(gaengine)
test_check("gaengine")
