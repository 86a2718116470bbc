# The library's steps on a data set: the object is written to a genotype file in a folder of
# its own (the library's pair file and reports go beside it) and the library runs there.

.with_input <- function(x, dir, run) {
  keep <- !is.null(dir)
  if (!keep) dir <- tempfile("gaengine")
  dir.create(dir, showWarnings = FALSE, recursive = TRUE)
  if (!keep) on.exit(unlink(dir, recursive = TRUE), add = TRUE)
  path <- file.path(normalizePath(dir), paste0("data.", tolower(x$tool)))
  gae_write(x, path)
  run(path)
}

# R's progress conventions: a text bar on the pair file, a message when ordering starts.
.progress <- function(show) {
  state <- new.env()
  state$bar <- NULL
  state$said <- FALSE
  update <- function(stage, amount) {
    if (stage == "pairs") {
      if (is.null(state$bar)) state$bar <- txtProgressBar(0, 1, style = 3, file = stderr())
      setTxtProgressBar(state$bar, amount)
    } else if (!state$said) {
      finish()
      message("ordering the linkage groups")
      state$said <- TRUE
    }
  }
  finish <- function() if (!is.null(state$bar)) { close(state$bar); state$bar <- NULL }
  list(update = if (isTRUE(show)) update else NULL, finish = finish)
}

.check_threads <- function(threads) {
  if (!is.numeric(threads) || length(threads) != 1L || is.na(threads) || threads < 1 || threads %% 1 != 0)
    stop("'threads' must be a whole number of at least 1", call. = FALSE)
  as.integer(threads)
}

gae_pairs <- function(x, threads = 1L, progress = interactive()) {
  x <- .as_gae(x)
  threads <- .check_threads(threads)
  shown <- .progress(progress)
  on.exit(shown$finish())
  pairs <- .with_input(x, NULL, function(path) .Call(gae_c_pairs, path, .tool_codes[[x$tool]], threads, shown$update))
  names <- list(colnames(x$geno), colnames(x$geno))
  dimnames(pairs$rf) <- names
  dimnames(pairs$lod) <- names
  pairs
}

.check_max_rf <- function(max_rf) {
  if (!is.numeric(max_rf) || length(max_rf) != 1L || is.na(max_rf) || max_rf <= 0)
    stop("'max_rf' must be one positive number (pairs link only below it)", call. = FALSE)
  max_rf
}

gae_lod_tree <- function(x, max_rf = 0.5, threads = 1L, progress = interactive()) {
  x <- .as_gae(x)
  max_rf <- .check_max_rf(max_rf)
  threads <- .check_threads(threads)
  shown <- .progress(progress)
  on.exit(shown$finish())
  tree <- .with_input(x, NULL, function(path)
    .Call(gae_c_lod_tree, path, .tool_codes[[x$tool]], max_rf, threads, shown$update))
  dimnames(tree$membership) <- list(colnames(x$geno), as.character(tree$threshold))
  out <- data.frame(lod = tree$threshold, groups = tree$groups, singletons = tree$singletons,
                    counted = tree$counted, chosen = tree$chosen & tree$threshold == tree$lod)
  attr(out, "membership") <- tree$membership
  attr(out, "choice") <- list(lod = tree$lod, chosen = tree$chosen, reason = tree$reason, min_size = tree$few)
  out
}

.check_seed <- function(seed) {
  if (is.null(seed)) return(NULL)
  if (!is.numeric(seed) || length(seed) != 1L || is.na(seed) || seed %% 1 != 0 || seed < 1 || seed > 2147483562)
    stop("'seed' must be NULL or one whole number from 1 to 2147483562", call. = FALSE)
  as.integer(seed)
}

.check_lod <- function(lod) {
  if (identical(lod, "auto")) return(NA_real_)
  if (!is.numeric(lod) || length(lod) != 1L || is.na(lod) || lod <= 0)
    stop("'lod' must be \"auto\" or one positive number", call. = FALSE)
  lod
}

# Genotypes the error scan set to missing: calls of the input that are missing in the
# corrected file the run wrote.
.suspects <- function(x, corrected_file, names) {
  none <- data.frame(marker = character(0), individual = integer(0), genotype = character(0))
  if (!nzchar(corrected_file) || !file.exists(corrected_file)) return(none)
  corrected <- gae_read(corrected_file, x$tool)$geno
  written <- .file_names(colnames(x$geno))
  found <- lapply(colnames(corrected), function(name) {
    m <- match(name, written)
    if (is.na(m) || nrow(corrected) != nrow(x$geno)) return(NULL)
    i <- which(corrected[, name] == "X" & x$geno[, m] != "X")
    if (length(i)) data.frame(marker = names[m], individual = i, genotype = x$geno[i, m])
  })
  found <- do.call(rbind, found)
  if (is.null(found)) none else found
}

gae_map <- function(x, lod = "auto", error_rate = NULL, seed = NULL, max_rf = 0.5, starts = NULL, threads = 1L,
                    dir = NULL, progress = interactive(), ...) {
  extra <- list(...)
  if (length(extra)) stop(sprintf("unknown argument %s", paste(sQuote(names(extra)), collapse = ", ")), call. = FALSE)
  x <- .as_gae(x)
  lod <- .check_lod(lod)
  seed <- .check_seed(seed)
  max_rf <- .check_max_rf(max_rf)
  threads <- .check_threads(threads)
  if (!is.null(starts) && (!is.numeric(starts) || length(starts) != 1L || is.na(starts) || starts < 1 || starts %% 1))
    stop("'starts' must be NULL or a whole number of at least 1", call. = FALSE)
  if (!is.null(error_rate)) {
    if (!is.numeric(error_rate) || length(error_rate) != 1L || is.na(error_rate) || error_rate < 0 || error_rate >= 0.5)
      stop("'error_rate' must be NULL or one number from 0 to below 0.5", call. = FALSE)
  }
  shown <- .progress(progress)
  on.exit(shown$finish())
  if (!is.null(seed)) {
    # The ordering draws its random starts from the clock unless this names a seed.
    before <- Sys.getenv("GAENGINE_SEED", unset = NA)
    Sys.setenv(GAENGINE_SEED = seed)
    on.exit(if (is.na(before)) Sys.unsetenv("GAENGINE_SEED") else Sys.setenv(GAENGINE_SEED = before), add = TRUE)
  }
  names <- colnames(x$geno)
  .with_input(x, dir, function(path) {
    r <- .Call(gae_c_map, path, .tool_codes[[x$tool]], lod, max_rf,
               if (is.null(error_rate)) NA_real_ else as.numeric(error_rate), seed,
               if (is.null(starts)) NA_integer_ else as.integer(starts), threads, shown$update)
    shown$finish()
    sizes <- lengths(r$groups$markers)
    markers <- unlist(r$groups$markers)
    positions <- unlist(r$groups$positions)
    group <- rep(r$groups$name, sizes)
    interval <- unlist(lapply(r$groups$positions, function(p) c(0, diff(p))))
    map <- data.frame(group = group, marker = names[markers], position = positions, interval = interval)
    structure(list(map = map,
                   error_rate = r$error_rate,
                   suspects = .suspects(x, r$corrected_file, names),
                   lod = r$lod, lod_chosen = r$lod_chosen, lod_reason = r$lod_reason, max_rf = r$max_rf,
                   unlinked = names[r$unlinked], dropped = names[r$dropped], uninformative = names[r$uninformative],
                   distances = r$distances, parental_maps = r$parental_maps,
                   files = if (is.null(dir)) character(0) else r$files_written, seconds = r$seconds),
              class = "gae_map")
  })
}

print.gae_map <- function(x, ...) {
  groups <- table(factor(x$map$group, levels = unique(x$map$group)))
  linked <- groups[groups > 1L]
  cat(sprintf("Linkage map: %d groups of two markers or more, %d markers placed, LOD %.1f%s\n", length(linked),
              sum(linked), x$lod, if (x$lod_chosen) " (from the LOD tree)" else ""))
  len <- tapply(x$map$position, factor(x$map$group, levels = unique(x$map$group)), max)[names(linked)]
  print(data.frame(markers = as.integer(linked), length_cM = round(as.numeric(len), 1), row.names = names(linked)))
  if (!is.na(x$error_rate)) cat(sprintf("Error rate %.4f per genotype call\n", x$error_rate))
  cat(sprintf("%d suspect genotypes, %d unlinked markers\n", nrow(x$suspects), length(x$unlinked)))
  invisible(x)
}
