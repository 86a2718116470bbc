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

/* ---- Map engine: grouping, ordering and rippling on the caller's arrays ------------------
 *
 * These run after a successful CheckError export of the same process: they read the pairwise
 * file (.LRD) it left. Without one they print line 1002 with its name, set `Status` to 1002
 * and change nothing.
 *
 * `ToolCode` selects the tool's rules and its log: 104 MAP, 105 CMP (consensus maps), 20 CDM,
 * 30 PLM; any other code writes no log. `ByWhat` selects the pair value that is minimised:
 * 1 the stored first value (minus the LOD score; a distance in CMP), 2 the recombination
 * frequency, 3 the map distance by the run's mapping function. CMP accepts only 3.
 *
 * The group model: per marker (input order, extent NumMarkers) `Anchor` (tied group, 0 free;
 * in CMP the number of maps holding the marker) and `Group` (1..NumGroups, 0 unlinked,
 * negative deleted); per group `GroupSize` and `GroupStatus` (1 grouped, 2 ordered,
 * 3 rippled); `Order`, marker numbers in map order: the groups one after the other, then the
 * unlinked, then the deleted markers; `Position` parallel to `Order`, cumulative centiMorgans
 * inside each group; `MapState` 1 grouped, 2 every group ordered, 3 every group rippled.
 */

/* Assigns every marker to a linkage group.
 *   ToolCode   104, 105, 20 or 30.
 *   Method     1 single linkage by threshold; 2 average linkage to a number of groups;
 *              3 by anchors alone (markers without an anchor stay unlinked, 0).
 *   ByWhat     1, 2 or 3 (see above); not examined for Method 3.
 *   Threshold  Method 1: a pair links when its LOD exceeds it (ByWhat 1) or its frequency or
 *              distance lies below it (ByWhat 2, 3). Method 2: the number of groups, rounded
 *              with halves away from zero (at least the largest anchor). CMP: Method 1 puts
 *              all markers in one group; Method 2 groups by distance below Threshold.
 *   NumMarkers markers in the run.
 *   Anchor     in: per marker, the group it is tied to (0 free).
 *   Group      out: per marker, its group.
 *   Status     out: 0, or 1105 (CMP, ByWhat not 3), 1106 (ByWhat out of range),
 *              1107 (Method out of range), 1002 (no pairwise file). */
GAE_API void MAPGrouping(int ToolCode, int Method, int ByWhat, float Threshold, int NumMarkers,
                         const int* Anchor, int* Group, int* Status);

/* Closes gaps in the group numbers: every unused number below the largest is removed and the
 * numbers above it move down.
 *   NumMarkers markers; NumGroups in: the present count, out: less one per removed number;
 *   Group      in/out: per marker. */
GAE_API void MapGroupCheck(int NumMarkers, int* NumGroups, int* Group);

/* Ties one marker to a group.
 *   Marker     1..NumMarkers (any other number changes nothing).
 *   GroupID    the group; outside 1..NumGroups the marker is freed (anchor 0).
 *   NumGroups, NumMarkers  the present counts.
 *   Anchor     in/out: per marker. */
GAE_API void MAPAnchorMarker(int Marker, int GroupID, int NumGroups, int NumMarkers, int* Anchor);

/* Orders every group of the model and computes its positions.
 *   ToolCode        104, 105, 20 or 30.
 *   Method          1 nearest neighbour judged by the pair-weighted sum; 2 tour search;
 *                   3 insertion around a frame (the first K positions of the group, K being
 *                   its anchored markers); 4 ascending marker number. CMP: 1 tour search of all
 *                   markers; 2 the markers shared by two maps or more first, the rest inserted.
 *   ByWhat          1, 2 or 3 (CMP: 3).
 *   OrderingOption  Method 2: 1 several random starts; 2 improve the present order;
 *                   3 improve the best nearest-neighbour tour; other values keep the order.
 *   OrderingParam1  OrderingOption 1: the number of random starts (at most the group size).
 *                   The starts are drawn from a clock seed; set the environment variable
 *                   GAENGINE_SEED to a positive integer to reproduce a run.
 *   OrderingParam2  Method 2: local search 1 2-opt, 2 3-opt (both through a dummy city),
 *                   3 2-opt, 4 3-opt (both on the open path); other values: none.
 *   NumMarkers, NumGroups  the model's counts.
 *   GroupSize       in: per group.
 *   GroupStatus     in/out: per group; 2 after a clean ordering (groups under 2 markers too).
 *   MapState        in/out: 2 when every group is ordered.
 *   Anchor, Group   in: per marker.
 *   Order, Position in/out: per map position; each group's slice is rewritten.
 *   Status          out: 0, or 1110/1111 (CMP Method/ByWhat), 1112/1113 (Method/ByWhat out
 *                   of range), 1002 (no pairwise file). */
GAE_API void MAPOrderingAll(int ToolCode, int Method, int ByWhat, int OrderingOption,
                            int OrderingParam1, int OrderingParam2, int NumMarkers, int NumGroups,
                            const int* GroupSize, int* GroupStatus, int* MapState,
                            const int* Anchor, const int* Group, int* Order, float* Position,
                            int* Status);

/* Orders one group: the options as in MAPOrderingAll.
 *   GroupMarkers    the group's size (below 2: nothing is done).
 *   GroupAnchor     in: the group's anchors (CMP: map counts), by position in the slice.
 *   GroupOrder      in/out: the group's slice of Order.
 *   GroupPosition   out: the group's slice of Position, in centiMorgans.
 *   Status          out: as in MAPOrderingAll. */
GAE_API void MAPOrdering(int ToolCode, int Method, int ByWhat, int OrderingOption,
                         int OrderingParam1, int OrderingParam2, int GroupMarkers,
                         const int* GroupAnchor, int* GroupOrder, float* GroupPosition,
                         int* Status);

/* Polishes every ordered group (status 2 or 3) with a sliding window in which every
 * permutation is tried once.
 *   ToolCode, ByWhat  as above (CMP: ByWhat 3).
 *   WindowSize      2 to 8 markers (CMP: 1 to 12).
 *   NumMarkers, NumGroups  the model's counts.
 *   GroupSize       in: per group.
 *   GroupStatus     in/out: per group; 3 after a clean pass. Groups with status 1 are skipped.
 *   MapState        in/out: 3 when every group is rippled.
 *   Group           in: per marker (not needed).
 *   Order, Position in/out: per map position.
 *   Status          out: 0, or 1115 (CMP, ByWhat not 3), 1116 (ByWhat out of range),
 *                   1117 (WindowSize out of range), 1002 (no pairwise file). */
GAE_API void MAPRipplingAll(int ToolCode, int ByWhat, int WindowSize, int NumMarkers, int NumGroups,
                            const int* GroupSize, int* GroupStatus, int* MapState, const int* Group,
                            int* Order, float* Position, int* Status);

/* Polishes one group: the options as in MAPRipplingAll.
 *   GroupMarkers    the group's size (one or two markers: nothing to do).
 *   GroupOrder      in/out: the group's slice of Order.
 *   GroupPosition   out: the group's slice of Position, in centiMorgans.
 *   Status          out: as in MAPRipplingAll. */
GAE_API void MAPRippling(int ToolCode, int ByWhat, int WindowSize, int GroupMarkers,
                         int* GroupOrder, float* GroupPosition, int* Status);

#ifdef __cplusplus
}
#endif

#endif /* GAENGINE_H */
