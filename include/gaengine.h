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

#ifdef __cplusplus
}
#endif

#endif /* GAENGINE_H */
