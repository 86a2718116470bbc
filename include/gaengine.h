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

/* ---- Checks that also prepare a map run -------------------------------------------------- */

/* Validates a MAP input file (header, marker section, anchor section), fills the caller's
 * arrays and writes the pairwise file <path less its last four characters>.LRD beside it (a
 * complete file of the same marker count is reused as it stands). The stage functions that
 * follow in the same process read that file.
 *   NumMarkers        extent of the arrays (from MAPFindNumMarkers)
 *   MarkerNameCodes   NumMarkers x 35 character codes, marker index fastest
 *   Anchor            anchor group of each marker from the file (0 free)
 *   SizeA, SizeH, SizeB, SizeX
 *                     per marker: genotypes of the P1 class (A and D), heterozygotes (H), the
 *                     P2 class (B and R) and missing (X), after folding the partial scores the
 *                     population cannot tell apart
 *   MarkerCategory    1 co-dominant, 12 dominant, 10 recessive
 *   ChiSquare, Probability
 *                     segregation test against the population's expected ratios and its p-value
 *   Status            0, or the code of the first error (see MAP.log) */
GAE_API void CheckErrorMAP(int PathLen, const char* Path, int NumMarkers, int* MarkerNameCodes,
                           int* Anchor, int* SizeA, int* SizeH, int* SizeB, int* SizeX,
                           int* MarkerCategory, float* ChiSquare, float* Probability, int* Status);

/* ---- Output ------------------------------------------------------------------------------ */

/* Writes the reports of a finished bi-parental map beside the input file, each named by the
 * input path less its last four characters plus a suffix (an existing file is replaced):
 * .sum (the map, the chromosome table, unlinked and deleted markers) and .mtp (the marker
 * table) always; .lod, .rec, .dis (the pairwise LOD, frequency and distance matrices of the
 * first 100 markers of the map order) by their switches; and, with the QTL switch, the input
 * files of the QTL tools. The input file is read again for names and genotypes, and the
 * pairwise file of the last CheckErrorMAP of this process supplies the pair values.
 *   NumMarkers      all markers of the file
 *   Anchor          [NumMarkers] anchor value of each marker, by its number in the file
 *   NumMapped       markers on the chromosomes (linked)
 *   NumUnlinked     unlinked markers; the rest (NumMarkers - NumMapped - NumUnlinked) are deleted
 *   NumGroups       number of chromosomes (linkage groups)
 *   GroupNameCodes  [NumGroups x 19] chromosome names as character codes, a name's 19
 *                   characters one after another
 *   GroupSize       [NumGroups] markers on each chromosome
 *   Order           [NumMarkers] marker numbers: the linked markers chromosome by chromosome in
 *                   map order, then the unlinked ones, then the deleted ones
 *   Position        [NumMapped] position of each linked marker in cM, parallel to Order
 *   WriteLOD, WriteREC, WriteDIS, WriteQTLFiles
 *                   switches, on when 1
 * There is no Status: a file that cannot be read again is reported on standard output and
 * in the log of a run that holds one, and nothing is written. */
GAE_API void MAPOutput(int PathLen, const char* Path, int NumMarkers, const int* Anchor,
                       int NumMapped, int NumUnlinked, int NumGroups, const int* GroupNameCodes,
                       const int* GroupSize, const int* Order, const float* Position,
                       int WriteLOD, int WriteREC, int WriteDIS, int WriteQTLFiles);

#ifdef __cplusplus
}
#endif

#endif /* GAENGINE_H */
