/*
 * GAEngine: the computing library behind a desktop program for the genetic analysis of
 * breeding populations (linkage-map construction, input validation, error detection).
 *
 * Calling conventions, shared by every function below:
 *  - All integers are 32-bit (`int`), all reals 32-bit (`float`).
 *  - A path comes as its byte count `PathLen` and a pointer to `PathLen` bytes with no
 *    terminator; trailing blanks are trimmed. A `PathLen` below 1 is an empty path.
 *  - `Status` is written by the callee: 0 on success, otherwise the code of the message that
 *    stopped the run (the text is in the tool's log, e.g. MAP.log in the current folder).
 *  - Arrays are allocated and owned by the caller; the library keeps no pointer after a call.
 *  - Marker names come back as character codes (0..255), `NumMarkers` by 35, the marker
 *    index running fastest: character j of marker i is at (j-1)*NumMarkers + (i-1).
 *  - Calls are not re-entrant: a front end serialises every call into the library.
 */
#ifndef GAENGINE_H
#define GAENGINE_H

#if defined(_WIN32) || defined(__CYGWIN__)
#  if defined(GAE_BUILDING_LIBRARY)
#    define GAE_API __declspec(dllexport)
#  else
#    define GAE_API __declspec(dllimport)
#  endif
#else
#  define GAE_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Sizes: learn how large the caller's arrays must be -------------------------------- */

/* Reads the header of a MAP input file (population type, mapping function, marker space
 * type, number of markers) and returns the number of markers. */
GAE_API void MAPFindNumMarkers(int PathLen, const char* Path, int* NumMarkers, int* Status);
/* The same for a clonal F1 / double-cross (CDM) input file. */
GAE_API void CDMFindNumMarkers(int PathLen, const char* Path, int* NumMarkers, int* Status);
/* The same for a four-way / eight-way pure-line (PLM) input file. */
GAE_API void PLMFindNumMarkers(int PathLen, const char* Path, int* NumMarkers, int* Status);
/* The same for the SNP conversion and marker binning tools; `ToolCode` selects the
 * population rules (2 bi-parental, 20 clonal, 30 pure lines). */
GAE_API void SNPFindNumMarkers(int ToolCode, int PathLen, const char* Path, int* NumMarkers, int* Status);
GAE_API void BINFindNumMarkers(int ToolCode, int PathLen, const char* Path, int* NumMarkers, int* Status);

/* ---- Two-point calculator: one table of a marker pair, typed in by hand ------------------ */

/* Estimates the recombination frequency of one marker pair of a bi-parental population from
 * its 3 x 3 table of genotype classes, with its LOD score, the test of linkage and the map
 * distance. Opens no log and never fails.
 *
 *  PairCode        the kinds of the two markers written side by side: 1 co-dominant,
 *                  12 dominant, 10 recessive (11, 112, 110, 121, 1212, 1210, 101, 1012, 1010).
 *  PopulationType  1 to 20: 1 P1BC1F1, 2 P2BC1F1, 3 F1DH, 4 RIL, 5 P1BC1RIL, 6 P2BC1RIL,
 *                  7 F2, 8 F3, 9 P1BC2F1, 10 P2BC2F1, 11 P1BC2RIL, 12 P2BC2RIL, 13 P1BC1F2,
 *                  14 P2BC1F2, 15 P1BC2F2, 16 P2BC2F2, 17 P1BC1DH, 18 P2BC1DH, 19 P1BC2DH,
 *                  20 P2BC2DH. Dominant and recessive markers occur in 7, 8 and 13 to 16 only.
 *  Cells           nine counts N1..N9, row by row: rows are the first marker's genotype (P1
 *                  type A; heterozygote H, or D / R for a dominant / recessive marker; P2
 *                  type B), columns the second marker's, cell = 3 (row - 1) + column.
 *  RecFreq         the estimate, 0 to 1; above 0.5 the markers are linked in the exchanged
 *                  phase. An empty table (no count above 0) gives 0.5. An unknown population
 *                  type or pair code gives NaN.
 *  StdErr          its standard error from the observed information, 0 where undefined.
 *  LOD             log10 likelihood ratio against r = 0.5; may be negative.
 *  PValue          1 - F(2 ln(10) LOD), F the chi-square distribution with 1 degree of
 *                  freedom; 1 for a LOD at or below 0.
 *  HaldaneCM       map distance in centiMorgans by Haldane's function; 1000 means unlinked.
 *  KosambiCM       the same by Kosambi's function.
 * Output pointers that are NULL are skipped; a NULL Cells counts as an empty table. */
GAE_API void ToolTwoPointREC(int PairCode, int PopulationType, const float* Cells, float* RecFreq,
                             float* StdErr, float* LOD, float* PValue, float* HaldaneCM,
                             float* KosambiCM);

#ifdef __cplusplus
}
#endif

#endif /* GAENGINE_H */
