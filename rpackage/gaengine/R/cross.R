# Genotype data sets as the package holds them: the library's one-letter genotypes (A, H, B,
# D, R, X in bi-parental populations) in an individuals-by-markers matrix, with the file's
# design and each marker's category.

.tool_codes <- c(MAP = 104L, CDM = 20L, PLM = 30L)

.tool_of_file <- function(file, tool) {
  if (!is.null(tool)) {
    tool <- toupper(tool)
    if (!tool %in% names(.tool_codes)) stop("'tool' must be one of \"MAP\", \"CDM\" or \"PLM\"", call. = FALSE)
    return(tool)
  }
  ext <- toupper(tools::file_ext(file))
  if (!ext %in% names(.tool_codes))
    stop(sprintf("cannot tell the tool of '%s' from its extension: name it .map, .cdm or .plm or give 'tool'", file),
         call. = FALSE)
  ext
}

.new_cross <- function(tool, population_type, mapping_function, geno, categories, chr = NULL, anchors = NULL,
                       pheno = NULL) {
  structure(list(tool = tool, population_type = population_type, mapping_function = mapping_function,
                 geno = geno, categories = stats::setNames(as.integer(categories), colnames(geno)),
                 chr = if (is.null(chr)) rep(NA_character_, ncol(geno)) else chr,
                 anchors = if (is.null(anchors)) integer(ncol(geno)) else as.integer(anchors),
                 pheno = pheno),
            class = "gae_cross")
}

gae_read <- function(file, tool = NULL) {
  if (!is.character(file) || length(file) != 1L || is.na(file)) stop("'file' must be one file name", call. = FALSE)
  file <- path.expand(file)
  if (!file.exists(file)) stop(sprintf("cannot open %s: no such file", file), call. = FALSE)
  tool <- .tool_of_file(file, tool)
  raw <- .Call(gae_c_read, file, .tool_codes[[tool]])
  geno <- if (length(raw$letters)) do.call(cbind, strsplit(raw$letters, "", fixed = TRUE))
          else matrix(character(0), raw$individuals, 0L)
  geno <- matrix(geno, nrow = raw$individuals, dimnames = list(NULL, raw$names))
  .new_cross(tool, raw$population_type, raw$mapping_function, geno, raw$categories, anchors = raw$anchors)
}

# Names the file can carry: no blanks and at most 35 characters; others get a positional name.
.file_names <- function(names) {
  ok <- nchar(names) <= 35L & !grepl("[[:space:]]", names) & nzchar(names)
  names[!ok] <- sprintf("M%06d", which(!ok))
  make.unique(names, sep = "_")
}

gae_write <- function(x, file) {
  x <- .as_gae(x)
  if (!is.character(file) || length(file) != 1L) stop("'file' must be one file name", call. = FALSE)
  letters <- if (ncol(x$geno)) apply(x$geno, 2L, paste0, collapse = "") else character(0)
  .Call(gae_c_write, path.expand(file), .tool_codes[[x$tool]], as.integer(x$population_type),
        as.integer(x$mapping_function), nrow(x$geno), .file_names(colnames(x$geno)),
        as.integer(x$categories), unname(letters), as.integer(x$anchors))
  invisible(file)
}

# Any of the accepted inputs as a gae_cross: the object itself, an R/qtl cross, a file name.
.as_gae <- function(x) {
  if (inherits(x, "gae_cross")) return(x)
  if (inherits(x, "cross")) return(gae_from_rqtl(x))
  if (is.character(x) && length(x) == 1L) return(gae_read(x))
  stop("expected a gae_cross (from gae_read or gae_from_rqtl), an R/qtl cross or a file name", call. = FALSE)
}

print.gae_cross <- function(x, ...) {
  cat(sprintf("%s data: population type %d, %d individuals, %d markers", x$tool, x$population_type,
              nrow(x$geno), ncol(x$geno)))
  chr <- unique(stats::na.omit(x$chr))
  if (length(chr)) cat(sprintf(" on %d chromosomes", length(chr)))
  if (!is.null(x$pheno)) cat(sprintf(", %d phenotypes", ncol(x$pheno)))
  cat("\n")
  invisible(x)
}
