# Small crosses simulated by R/qtl: three autosomes of 80 cM with eight markers each, so that
# every pair estimate, group and order can be checked against R/qtl or the simulated map.
simulated_cross <- function(type, n_ind = 150, seed = 1, include_x = FALSE, error_prob = 0) {
  set.seed(seed)
  map <- qtl::sim.map(len = rep(80, 3), n.mar = 8, include.x = include_x, eq.spacing = FALSE)
  qtl::sim.cross(map, n.ind = n_ind, type = type, error.prob = error_prob)
}

# The same split of markers into groups: each label of one side meets one label of the other.
same_partition <- function(a, b) {
  t <- table(as.character(a), as.character(b))
  all(rowSums(t > 0) == 1) && all(colSums(t > 0) == 1)
}
