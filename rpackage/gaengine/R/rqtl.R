# R/qtl crosses in and out. R/qtl codes genotypes 1..5 per cross type; the population types
# are the library's bi-parental ones (1 backcross to P1, 3 doubled haploids, 4 RIL by
# selfing, 7 F2).

.rqtl_types <- list(
  bc = list(type = 1L, letters = c("A", "H")),
  dh = list(type = 3L, letters = c("A", "B")),
  riself = list(type = 4L, letters = c("A", "B")),
  f2 = list(type = 7L, letters = c("A", "H", "B", "D", "R")))

# An F2 marker must be fully informative (A, H, B), dominant (B, D) or recessive (A, R)
# throughout; R/qtl allows partly informative calls beside full ones, which become missing.
.one_marker_kind <- function(geno) {
  mixed <- 0L
  categories <- integer(ncol(geno))
  for (m in seq_len(ncol(geno))) {
    seen <- setdiff(unique(geno[, m]), "X")
    if (all(seen %in% c("A", "H", "B"))) categories[m] <- 1L
    else if (all(seen %in% c("B", "D"))) categories[m] <- 12L
    else if (all(seen %in% c("A", "R"))) categories[m] <- 10L
    else {
      partial <- geno[, m] %in% c("D", "R")
      mixed <- mixed + sum(partial)
      geno[partial, m] <- "X"
      categories[m] <- 1L
    }
  }
  list(geno = geno, categories = categories, mixed = mixed)
}

gae_from_rqtl <- function(cross) {
  if (!inherits(cross, "cross")) stop("'cross' must be an R/qtl cross object", call. = FALSE)
  kind <- .rqtl_types[[class(cross)[1L]]]
  if (is.null(kind))
    stop(sprintf("cross type \"%s\" is not supported: gaengine maps R/qtl crosses of type %s", class(cross)[1L],
                 paste(names(.rqtl_types), collapse = ", ")), call. = FALSE)
  is_x <- vapply(cross$geno, function(g) inherits(g, "X"), logical(1))
  if (any(is_x)) warning(sprintf("X chromosome %s left out", paste(names(cross$geno)[is_x], collapse = ", ")),
                         call. = FALSE)
  kept <- cross$geno[!is_x]
  if (!length(kept)) stop("the cross holds no autosome to map", call. = FALSE)
  codes <- do.call(cbind, lapply(kept, function(g) g$data))
  chr <- rep(names(kept), vapply(kept, function(g) ncol(g$data), integer(1)))
  if (any(!is.na(codes) & (codes < 1 | codes > length(kind$letters))))
    stop("the cross holds genotype codes its type does not have", call. = FALSE)
  geno <- matrix(ifelse(is.na(codes), "X", kind$letters[codes]), nrow(codes), dimnames = list(NULL, colnames(codes)))
  empty <- colSums(geno != "X") == 0L
  if (any(empty)) warning(sprintf("%d markers without a genotype left out", sum(empty)), call. = FALSE)
  geno <- geno[, !empty, drop = FALSE]
  chr <- chr[!empty]
  kinds <- .one_marker_kind(geno)
  if (kinds$mixed > 0L)
    warning(sprintf("%d partly informative calls beside fully informative ones set to missing", kinds$mixed),
            call. = FALSE)
  .new_cross("MAP", kind$type, 1L, kinds$geno, kinds$categories, chr = chr, pheno = cross$pheno)
}

as_rqtl_map <- function(m, singletons = FALSE) {
  if (!inherits(m, "gae_map")) stop("'m' must be a map made by gae_map", call. = FALSE)
  groups <- split(m$map, factor(m$map$group, levels = unique(m$map$group)))
  if (!singletons) groups <- groups[vapply(groups, nrow, integer(1)) > 1L]
  map <- lapply(groups, function(g) structure(stats::setNames(g$position, g$marker), class = "A"))
  class(map) <- "map"
  map
}

as_rqtl_cross <- function(m, cross) {
  if (!inherits(cross, "cross")) stop("'cross' must be an R/qtl cross object", call. = FALSE)
  map <- as_rqtl_map(m)
  codes <- do.call(cbind, lapply(cross$geno, function(g) g$data))
  cross$geno <- lapply(map, function(chrom) {
    g <- list(data = codes[, names(chrom), drop = FALSE], map = unclass(chrom))
    attr(g$map, "class") <- NULL
    structure(g, class = "A")
  })
  cross
}
