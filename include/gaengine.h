/*
 * GAEngine: the computing library behind a desktop program for the genetic analysis of
 * breeding populations (linkage-map construction, input validation, error detection).
 *
 * Calling conventions, shared by every function below:
 *  - All integers are 32-bit (`int`), all reals 32-bit (`float`).
 *  - A path comes as its byte count `PathLen` and a pointer to `PathLen` bytes with no
 *    terminator; it ends at its first NUL byte if it has one (a buffer's size may be passed),
 *    and trailing blanks are trimmed. A `PathLen` below 1 is an empty path.
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

/* The same for a clonal F1 or double-cross (CDM) input file; its pairwise file holds seven
 * values per pair (both parents' frequencies and LODs, the combined ones, the linkage phase).
 *   SizeAC .. SizeXX  per marker: progeny of each type AC, AD, BC, BD, XC, XD, AX, BX, AA, AB,
 *                     BB and XX (the first letter from the first parent, AB x CD)
 *   MarkerCategory    1 ABCD, 2 A=B, 3 C=D, 4 AB=CD (clonal F1) or A=CB=D, 5 A=DB=C
 *   ChiSquare, Probability
 *                     segregation test of the types the category tells apart (1:1:1:1, 1:1 or
 *                     1:2:1) and its p-value
 *   Status            0, or the code of the first error (see CDM.log) */
GAE_API void CheckErrorCDM(int PathLen, const char* Path, int NumMarkers, int* MarkerNameCodes,
                           int* Anchor, int* SizeAC, int* SizeAD, int* SizeBC, int* SizeBD,
                           int* SizeXC, int* SizeXD, int* SizeAX, int* SizeBX, int* SizeAA,
                           int* SizeAB, int* SizeBB, int* SizeXX, int* MarkerCategory,
                           float* ChiSquare, float* Probability, int* Status);
/* The same for a four-way or eight-way pure-line (PLM) input file; writes the pairwise file
 * that the stage exports with ToolCode 30 read.
 *   SizeA .. SizeH    per marker: lines showing each founder letter (E to H stay 0 among four
 *                     founders); founders that share an allele show the first one's letter
 *   SizeX             per marker: missing lines
 *   MarkerCategory    the founder pattern: one decimal digit per founder, founder 1 leftmost,
 *                     equal digits for founders that share an allele ("ABCB" gives 1232)
 *   ChiSquare, Probability
 *                     segregation test against the shares of the founders in each allele
 *                     group; NaN when a group expects no line
 *   Status            0, or the code of the first error (see PLM.log) */
GAE_API void CheckErrorPLM(int PathLen, const char* Path, int NumMarkers, int* MarkerNameCodes,
                           int* Anchor, int* SizeA, int* SizeB, int* SizeC, int* SizeD,
                           int* SizeE, int* SizeF, int* SizeG, int* SizeH, int* SizeX,
                           int* MarkerCategory, float* ChiSquare, float* Probability, int* Status);

/* ---- Input checks of the QTL and analysis tools --------------------------------------- */

/* Each reads the whole input file of its tool and checks it: `Status` comes back 0 for a good
 * file, or the code of the first thing wrong, whose line stands in the tool's log (BIP.log,
 * SDL.log, ...) followed by the 1101 line. A missing file gives `Status` 1002. Arguments:
 *   PathLen  number of bytes of Path
 *   Path     path of the input file (no terminator needed; trailing blanks are trimmed)
 *   Status   out: 0 or the code that stopped the check */
GAE_API void CheckErrorBIP(int PathLen, const char* Path, int* Status);  /* bi-parental QTL mapping */
GAE_API void CheckErrorSDL(int PathLen, const char* Path, int* Status);  /* segregation distortion */
GAE_API void CheckErrorMET(int PathLen, const char* Path, int* Status);  /* multi-environment trials */
GAE_API void CheckErrorNAM(int PathLen, const char* Path, int* Status);  /* nested association mapping */
GAE_API void CheckErrorPLQ(int PathLen, const char* Path, int* Status);  /* QTL in pure-line populations */
GAE_API void CheckErrorCDQ(int PathLen, const char* Path, int* Status);  /* QTL in clonal F1 / double cross */
GAE_API void CheckErrorCSL(int PathLen, const char* Path, int* Status);  /* chromosome segment lines */
GAE_API void CheckErrorAOV(int PathLen, const char* Path, int* Status);  /* analysis of variance of a trial */

/* Sizes of a consensus-map (CMP) input file; reads and checks its whole map section.
 *   PathLen, Path  the input file
 *   SpaceType      out: 1 intervals, 2 positions
 *   SpaceUnit      out: 1 centiMorgans, 2 Morgan
 *   NumChs         out: number of input maps (chromosomes of the section)
 *   NumMarkers     out: number of distinct markers over all maps
 *   Status         out: 0 or the code that stopped the read (text in CMP.log) */
GAE_API void CMPFindNumMarkers(int PathLen, const char* Path, int* SpaceType, int* SpaceUnit,
                               int* NumChs, int* NumMarkers, int* Status);

/* Validates a consensus-map (CMP) input file, fills the caller's arrays and writes the pairwise
 * file <path less its last four characters>.LRD beside it: for every pair of distinct markers
 * the mean distance (cM) over the input maps that hold both (1000 when none does) and its
 * frequency by Morgan's function (a complete file of the same marker count is reused). The
 * stage functions that follow in the same process read that file with ToolCode 105.
 *   NumChs           the number of input maps (from CMPFindNumMarkers)
 *   NumMarkers       the number of distinct markers (from CMPFindNumMarkers)
 *   MarkerNameCodes  NumMarkers x 35 character codes, marker index fastest, markers numbered
 *                    in the order of their first appearance in the file
 *   NumMaps          [NumMarkers] on how many input maps each marker stands; pass it as the
 *                    Anchor of the stage functions
 *   MarkerPlaces     [NumMarkers x NumChs] the place (1 = first marker of that map) of each
 *                    marker on each map, 0 where the map lacks it; laid out like
 *                    MarkerNameCodes, the marker index running fastest: marker i on map c at
 *                    (c-1)*NumMarkers + (i-1)
 *   Status           0, or the code of the first error (see CMP.log); 2032 when no marker
 *                    stands on every map */
GAE_API void CheckErrorCMP(int PathLen, const char* Path, int NumChs, int NumMarkers,
                           int* MarkerNameCodes, int* NumMaps, int* MarkerPlaces, int* Status);

/* ---- Checks of the marker tools ----------------------------------------------------------
 * `ToolCode` gives the population rules: 20 clonal F1 / double cross, 30 four- and eight-way
 * pure lines, any other value two inbred parents (use 2). Logs: SNP.log and BIN.log. */

/* Reads a SNP input file (header; the parents' section: the method for missing parents, 1
 * delete the marker or 2 infer the missing parent from the progeny, then each marker's name and
 * parents' calls, 2, 4 or 8 of them by ToolCode and PopulationType; the progeny section; the
 * anchors) and converts every marker to the coding of its map tool. A marker without
 * polymorphism is flagged for deletion with a warning in the log.
 *   NumMarkers       extent of the arrays (from SNPFindNumMarkers)
 *   MarkerNameCodes  NumMarkers x 35 character codes, marker index fastest
 *   Anchor           anchor group of each marker (0 free)
 *   MarkerCode       two parents: the category, 1 (SNPs are co-dominant); four parents of a
 *                    clonal F1 or double cross: the category 1 ABCD, 2 A=B, 3 C=D, 4 AB=CD or
 *                    A=CB=D, 5 A=DB=C; pure lines: the founder pattern (1212: founders 1 and 3
 *                    carry one allele, 2 and 4 the other); 0 for a marker flagged for deletion
 *   Status           0, or the code of the first error (see SNP.log) */
GAE_API void CheckErrorSNP(int ToolCode, int PathLen, const char* Path, int NumMarkers,
                           int* MarkerNameCodes, int* Anchor, int* MarkerCode, int* Status);
/* Reads a marker-binning input file (the header, marker section and anchor section of a MAP,
 * CDM or PLM file by ToolCode) and checks it.
 *   MarkerCategory   per marker, as the marker section gives it (MAP: 1, 12, 10; CDM: 1..5;
 *                    PLM: the founder pattern) */
GAE_API void CheckErrorBIN(int ToolCode, int PathLen, const char* Path, int NumMarkers,
                           int* MarkerNameCodes, int* Anchor, int* MarkerCategory, int* Status);

/* Header of a genomic-prediction (GSP) input file: training population size, breeding
 * population size, number of traits, then the trait names. No log is written; a failure prints
 * one "--Input error:" line to standard output.
 *   PathLen, Path  the input file
 *   NumTraits      out: number of traits (left unwritten on failure)
 *   ErrorFlag      out: logical flag, bit 0 set on failure */
GAE_API void GSPFindNumTraits(int PathLen, const char* Path, int* NumTraits, int* ErrorFlag);
/*   NumTraits         the caller's number of traits, the extent of Names
 *   Names             out: NumTraits by 19 character codes, the trait index running fastest:
 *                     character j of trait i is at (j-1)*NumTraits + (i-1)
 *   FirstHeaderValue  out: the first header value, the training population size
 *   ErrorFlag         out: logical flag, bit 0 set on failure */
GAE_API void GSPFindTraitName(int PathLen, const char* Path, int NumTraits, int* Names,
                              int* FirstHeaderValue, int* ErrorFlag);

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
 *   WindowSize      2 to 8 markers (CMP: 1 to 12). The orders of a window are walked one
 *                   after another, in lexicographic order, without a table of them: memory
 *                   stays small whatever the window, while time grows as its factorial (a
 *                   window of 12 tries 479,001,600 orders at each stop). Wider windows are
 *                   refused with 1117.
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

/* ---- Hand editing of a grouped or ordered map ------------------------------------------- */
/* These work in place on the caller's group model, the arrays that the grouping, ordering
 * and rippling steps fill:
 *  - `GroupSize`, `GroupStatus`: by group (1 grouped, 2 ordered, 3 rippled), `NumGroups` each;
 *  - `Group`: by marker (input order), the marker's group, 0 unlinked, -1 deleted;
 *  - `Order`: the marker numbers in map order, in three blocks: the groups one after the other,
 *    then the `NumUnlinked` unlinked markers, then the `NumDeleted` deleted markers;
 *  - `Position`: parallel to `Order`, a marker's distance (cM) from the first marker of its
 *    group, 0 throughout a group that has not been ordered.
 * They open no log and set no status: a request that names nothing valid changes nothing.
 * Distances of markers that become neighbours in an ordered group are read from the pairwise
 * file of this process's last successful CheckError call (the recombination frequency through
 * the project's mapping function); without that file such an edit changes nothing. No edit
 * changes `GroupStatus` or the number of groups; a group emptied by edits stays, empty, until
 * `MapGroupCheck` closes the gap. */

/* Moves group `GroupID` one place along the map.
 *  GroupID      group to move, 1..NumGroups
 *  Direction    1: exchange it with the group before it (nothing for group 1);
 *               2: exchange it with the group after it (nothing for the last group)
 *  NumGroups    number of groups
 *  NumMarkers   number of markers, the length of Group, Order, Position
 *  GroupSize, GroupStatus, Group, Order, Position   the group model, updated: the two groups
 *               exchange their blocks (positions travel with their markers), sizes, statuses
 *               and numbers. */
GAE_API void MAPGroupMove(int GroupID, int Direction, int NumGroups, int NumMarkers,
                          int* GroupSize, int* GroupStatus, int* Group, int* Order,
                          float* Position);

/* Turns one group round.
 *  GroupMarkers   number of markers in the group; below 2 nothing happens
 *  GroupOrder     the group's slice of Order (GroupMarkers entries), reversed in place
 *  GroupPosition  the group's slice of Position: each position p becomes T - p, T being the
 *                 old last position, and the slice is reversed with the markers. */
GAE_API void MAPGroupReverse(int GroupMarkers, int* GroupOrder, float* GroupPosition);

/* Moves one marker.
 *  OrderIndex   the marker's index in the whole of Order, 1..NumMarkers
 *  TargetGroup  1..NumGroups: that group; NumGroups+1: the unlinked block; any other number
 *               (0 for instance): the deleted block
 *  PlaceMode    inside the marker's own group: 1 one place up, 2 one place down, 3 to the end
 *               of the group, 4 to the place that makes the group shortest; into another
 *               group the marker joins at the end, and with 4 then goes to its best place
 *  NumGroups    number of groups
 *  NumMarkers   number of markers
 *  NumMapped, NumUnlinked, NumDeleted   the block counts, updated
 *  GroupSize, GroupStatus, Group, Order, Position   the group model, updated.
 * A marker that leaves the first place of an ordered group leaves the remaining positions
 * where they stood: each remaining marker shows the position of the one before it until the
 * group is ordered again. A marker that joins an empty group is placed at 0. */
GAE_API void MAPGroupMarkerMove(int OrderIndex, int TargetGroup, int PlaceMode, int NumGroups,
                                int NumMarkers, int* NumMapped, int* NumUnlinked, int* NumDeleted,
                                int* GroupSize, int* GroupStatus, int* Group, int* Order,
                                float* Position);

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

/* The reports of a finished clonal F1 or double-cross map, with the arguments of MAPOutput
 * and the pairwise file of the last CheckErrorCDM: the combined map (.sum, .lod, .rec, .dis),
 * each parent's map (.sumf, .lodf, .recf, .disf for the first parent, without its A=B
 * markers; .summ, .lodm, .recm, .dism for the second, without its C=D markers), .mtp with the
 * type counts and segregation tests, .hap with both parents' linkage phases along each
 * chromosome, the error report .err, the corrected data set <stem>EC.cdm and, with the QTL
 * switch, .cdq with the genotypes brought into one phase. */
GAE_API void CDMOutput(int PathLen, const char* Path, int NumMarkers, const int* Anchor,
                       int NumMapped, int NumUnlinked, int NumGroups, const int* GroupNameCodes,
                       const int* GroupSize, const int* Order, const float* Position,
                       int WriteLOD, int WriteREC, int WriteDIS, int WriteQTLFiles);

/* The same for a pure-line map after CheckErrorPLM: .sum, .lod, .rec and .dis as above, the
 * marker table .mtp with the lines of each founder letter and the category, then the QTL file
 * .plq by the QTL switch, the error report .err and the corrected data set <stem>EC.plm. */
GAE_API void PLMOutput(int PathLen, const char* Path, int NumMarkers, const int* Anchor,
                       int NumMapped, int NumUnlinked, int NumGroups, const int* GroupNameCodes,
                       const int* GroupSize, const int* Order, const float* Position,
                       int WriteLOD, int WriteREC, int WriteDIS, int WriteQTLFiles);

/* Writes the reports of a consensus map beside its CMP input file: .sum (each marker of the
 * consensus with its interval and position, the number of input maps that hold it and its
 * place on each of them, then the chromosome table, unlinked and deleted markers, as in
 * MAPOutput) and, with the switch, .dis (the distances between the first 100 markers of the
 * map order). The input file is read again for the names and the maps; the pairwise file of
 * the last CheckErrorCMP of this process supplies the distances. The arguments are those of
 * MAPOutput less the anchors, which the maps read again replace, and with one switch:
 *   WriteDIS   write .dis when 1 */
GAE_API void CMPOutput(int PathLen, const char* Path, int NumMarkers, int NumMapped,
                       int NumUnlinked, int NumGroups, const int* GroupNameCodes,
                       const int* GroupSize, const int* Order, const float* Position,
                       int WriteDIS);

/* ---- The whole run ----------------------------------------------------------------------- */

/* Builds a linkage map from one MAP input file with the settled defaults and writes every
 * result file beside it: reads and checks the file, computes (or reuses) the pairwise file,
 * groups the markers (LOD 3.0), orders each group (recombination frequency, five random
 * starts, 2-opt on the open path), ripples it (LOD, window of 5 markers), then writes .sum,
 * .mtp, .lod, .rec, .dis, .sdl, .bip, .met, the error report .err and the corrected data set
 * <stem>EC.map. The stages log to MAP.log in the current folder.
 *   Status   0, or the code of the error that stopped the run */
GAE_API void MAPAllByDefault(int PathLen, const char* Path, int* Status);

/* The whole run of a clonal F1 or double-cross (CDM) input file: groups at a combined
 * frequency of 0.3, orders by frequency, ripples by LOD, then writes every file of CDMOutput.
 * The stages log to CDM.log.
 *   Status   0, or the code of the error that stopped the run */
GAE_API void CDMAllByDefault(int PathLen, const char* Path, int* Status);
/* The same for a PLM input file (4PDH, 4PRIL, 8PDH, 8PRIL): grouping at a recombination
 * frequency of 0.3, ordering by frequency with ten random starts and the 3-opt search over a
 * closed tour through a dummy city, rippling by LOD; writes the
 * files of PLMOutput with every switch on. The stages log to PLM.log.
 *   Status   0, or the code of the error that stopped the run */
GAE_API void PLMAllByDefault(int PathLen, const char* Path, int* Status);

/* Builds a consensus of the maps of one CMP input file with the settled defaults and writes
 * .LRD, .sum and .dis beside it: every marker in one group, the markers shared by two maps or
 * more ordered by distance (five random starts, 2-opt on the open path) with the others
 * inserted around them, then a window of 5 markers slid once along the order. The stages log
 * to CMP.log in the current folder.
 *   Status   0, or the code of the error that stopped the run */
GAE_API void CMPAllByDefault(int PathLen, const char* Path, int* Status);

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
 *                  phase. An empty table (no count above 0) gives 0.5. A table without an
 *                  estimate (a degenerate table whose likelihood gives no number, or an
 *                  unknown population type or pair code) gives 0.5 with LOD 0, as the pair
 *                  file stores such a pair.
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
