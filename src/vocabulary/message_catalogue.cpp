#include "vocabulary/message_catalogue.h"

namespace gae {

namespace {

constexpr bool P = true;   // error line, with prefix
constexpr bool N = false;  // plain line

const CatalogueEntry kCatalogue[] = {
    // Messages of stand-alone runs.
    {1001, N, "Welcome to the use of {}!"},
    {1002, N, "{} does not exist, and the program stops!"},
    {1003, N, "can not read the software name in mio file!"},
    {1004, N, "software name in mio file out of range!"},
    {1005, N, "cannot read iuput file name in mio file!"},
    {1006, N, "cannot read PAR file name in mio file!"},
    {1007, N, "  {} read successfully!"},
    {1008, N, "{} does not exist, and the program stops!"},
    {1009, N, "{} does not exist, and the program stops!"},
    {1010, N, "--Error found in {}. The program stops!"},
    {1011, N, "  {} read successfully!"},
    {1012, N, "--Error found in {}. The program stops!"},
    {1013, N, "  {} read successfully!"},
    {1014, N, "  {} ends at {}:{}:{} on {}/{}/{} (yyyy/mm/dd)"},
    {1015, N, "CPU_TIME taken: {} minutes or {} seconds"},
    {1016, N, "Dealing with redundancy and multi-collinearality..."},
    {1017, N, "Permutation test is running..."},
    {1018, N, "QTL mapping is running..."},
    {1019, N, "Power simulation is running..."},

    // Library frame: start, finish, time, stage options.
    {1101, P, "error found in DLL! DLL name={}"},
    {1102, N, "{} run successfully!"},
    {1103, N, "   CPU time taken: {} minutes or {} seconds"},
    {1104, N, "  Grouping is running ...!"},
    {1105, P, "ByWhat for Grouping is out of range [3]. ByWhat={}"},
    {1106, P, "ByWhat for Grouping is out of range [1,2,3]. ByWhat={}"},
    {1107, P, "Method for Grouping is out of range [1,2,3]. Method={}"},
    {1108, N, "  Grouping was completed!"},
    {1109, N, "  Ordering is running! GroupID={}"},
    {1110, P, "Method for Ordering is out of range [1,2]. Method={}"},
    {1111, P, "ByWhat for Ordering is out of range [1,2]. ByWhat={}"},
    {1112, P, "Method for Ordering is out of range [1,2,3,4]. Method={}"},
    {1113, P, "ByWhat for Ordering is out of range [1,2,3]. ByWhat={}"},
    {1114, N, "  Rippling is running! GroupID={}"},
    {1115, P, "ByWhat for Rippling is out of range [3]. ByWhat={}"},
    {1116, P, "ByWhat for Rippling is out of range [1,2,3]. ByWhat={}"},
    {1117, P, "WindowSize for Rippling is out of range [2,8]. WindowSize={}"},
    // A result file named as the input file is not written over it.
    {1118, N, "Warning: result file not written, it would replace the input file! File={}"},

    {1201, N, "QTL mapping for trait "},
    {1202, N, "QTL mapping for environment "},
    {1203, N, "Single marker analysis ..."},
    {1204, N, "Single interval mapping of additive QTL ..."},
    {1205, N, "Inclusive composite interval mapping of additive QTL"},
    {1206, N, "Step 1: Stepwise regression ..."},
    {1207, N, "Step 2: Interval mapping on adjusted phenotype ..."},
    {1208, N, "Selective genotyping of additive QTL ..."},
    {1209, N, "Single interval mapping of epistatic QTL ..."},
    {1210, N, "Inclusive composite interval mapping of epistatic QTL ..."},
    {1211, N, "Step 1: Stepwise regression for additive and epistasis ..."},
    {1212, N, "Step 2: Two-D scanning on the adjusted phenotype ..."},
    {1213, N, "Stepwise regression for marker and marker-pair effects ..."},
    {1214, N, "RSTEP-LRT additive mapping..."},
    {1215, N, "RSTEP-LRT epistatic mapping..."},
    {1216, N, "Model selection for environment "},
    {1217, N, "INCM-ADD mapping for trait "},
    {1218, N, "IM-ADD mapping for trait "},
    {1251, N, "Permutation test for trait "},
    {1254, N, "Permutation test for single marker analysis ..."},
    {1255, N, "Permutation test for IM additive mapping ..."},
    {1256, N, "Permutation test for INCM additive mapping ..."},
    {1257, N, "Permutation test for selective genotyping ..."},
    {1258, N, "Permutation test for IM epistatic mapping ..."},
    {1259, N, "Permutation test for INCM epistatic mapping ..."},
    {1260, N, "Permutation test for RSTEP-LRT additive mapping ..."},
    {1261, N, "Permutation test for RSTEP-LRT epistatic mapping ..."},
    {1262, N, "Permutation test for INCM additive mapping ... TraitID={}"},
    {1263, N, "Permutation test for IM additive mapping ... TraitID={}"},
    {1264, N, "IM epistasis mapping ... Mapping2D%NumTests={}"},
    {1265, N, "INCM epistasis mapping ... Mapping2D%NumTests={}"},

    {1301, N, "Analysis of variance (ANOVA) is running ... ", true},
    {1302, N, "Estimation of genotypic values (BLUE) is running ... ", true},
    {1303, N, "Calculatiion of frequency distribution is running ... ", true},
    {1304, N, "Estimation of error effects for QQ plot is running ... ", true},
    {1305, N, "Estimation of correlation coefficient is running ... ", true},
    {1306, N, "Principal component analysis (PCA) is running ... ", true},
    {1307, N, "Stability analysis is running ... ", true},
    {1308, N, " Completed!"},

    // Scalar header fields.
    {2001, P, "cannot read Indicator for mapping (1) or simulation (2)!"},
    {2002, P, "Indicator={} out of range [1:2]!"},
    {2003, P, "cannot read PopulationType!"},
    {2004, P, "PopulationType={} out of range [1:20]!"},
    {2005, P, "PopulationType={} out of range [1:4,5:6,9:12,17:20]!"},
    {2006, P, "PopulationType={} out of range [1:2]!"},
    {2007, P, "PopulationType={} out of range [1:4]!"},
    {2008, P, "cannot read MappingFunction!"},
    {2009, P, "MappingFunction={} out of range [1:3]!"},
    {2010, P, "cannot read SpaceType on linkage maps!"},
    {2011, P, "Marker SpaceType={} out of range [1:2]!"},
    {2012, P, "cannot read SpaceUnit on linkage maps!"},
    {2013, P, "Marker SpaceUnit={} out of range [1:2]!"},
    {2014, P, "cannot read Number of Chromosomes (NumChs)!"},
    {2015, P, "Number of Chromosomes={} out of range [1:]!"},
    {2016, P, "cannot read Number of Markers (NumMarkers)!"},
    {2017, P, "Number of Markers={} out of range [1:]!"},
    {2018, P, "cannot read PopulationSize!"},
    {2019, P, "PopulationSize={} out of range [1:]!"},
    {2020, P, "cannot read Number of Traits (NumTraits)!"},
    {2021, P, "Number of Traits={} out of range [0:]!"},
    {2022, P, "cannot read Number of Environments (NumEnvs)!"},
    {2023, P, "Number of Environments={} out of range [1:]!"},
    {2024, P, "cannot read Number of Replications (NumReps)!"},
    {2025, P, "Number of Replications={} out of range [1:]!"},
    {2026, P, "cannot read Number of Families (NumFamilies)!"},
    {2027, P, "Number of Families={} out of range [1:]!"},
    {2028, P, "too many markers! NumMarkers={}"},
    {2029, P, "cannot read Indicator, Times, and TypeI error for PermuTest!"},
    {2030, P, "Indicator of permutation test out of range [0,1]!"},
    {2031, P, "Times of permutation test out of range [1,1000]!"},
    {2032, P, "Type I error rate of permutation test out of range (0,0.5)!"},

    // Chromosomes and linkage maps.
    {2101, P, "cannot read chrom name and number of markers! ChromID={}"},
    {2102, P, "NumMarkers={} out of range [1:]! ChromID={}"},
    {2103, P, "cannot read marker name and position! ChromID={} MarkerID={}"},
    {2104, P, "ChromID of the marker out of range! ChromID={} MarkerID={}"},
    {2105, P, "cannot read marker name and interval! ChromID={} MarkerID={}"},
    {2106, P, "ChromID of the marker out of range! ChromID={} MarkerID={}"},
    {2107, P, "the marker order is not correct! ChromID={} MarkerID={}"},
    {2108, P, "two markers have same name! ChromID1={} MarkerID1={}; ChromID2={} MarkerID2={} MarkerName={}"},
    {2109, P, "two markers have same name! ChromID1={} MarkerID1={}; ChromID2={} MarkerID2={} MarkerName={}"},

    // Marker types and categories. Several checks use a neighbouring code, so the words do
    // not always name the check; the pairing of code and text is kept as it is.
    {2201, P, "cannot read MarkerType! MarkerID={}"},
    {2202, P, "Invalid MarkerType! MarkerID={} LineID={} Input MarkerType={}"},
    {2203, P, "MarkerType out of range (A,H,D,X)! MarkerID={} LineID={} MarkerType={}"},
    {2204, P, "MarkerType out of range (H,B,R,X)! MarkerID={} LineID={} MarkerType={}"},
    {2205, P, "MarkerType out of range (A,H,B,X)! MarkerID={} LineID={} MarkerType={}"},
    {2206, P, "MarkerType out of range (A,H,B,D,R,X)! MarkerID={} LineID={} MarkerType={}"},
    {2207, P, "Useless marker! MarkerID={}"},
    {2208, P, "no polymorphism! MarkerID={}"},
    {2209, P, "impossible MarkerCategory! MarkerID={} MarkerCategory={}"},
    {2210, P, "cannot read MarkerType! MarkerID={}"},
    {2211, P, "Invalid MarkerType! MarkerID={} LineID={} Input MarkerType={}"},
    {2212, P, "Invalid MarkerType! MarkerID={} LineID={} Input MarkerType={}"},
    {2213, P, "MarkerCategory out of range (ABCD,A=B,C=D,A=CB=D,A=DB=C)! MarkerID={} Input Category={}"},
    {2214, P, "MarkerCategory out of range (ABCD,A=B,C=D,AB=CD)! MarkerID={} Input Category={}"},
    {2215, P, "Invalid MarkerType! MarkerID={} LineID={} Input MarkerType={}"},
    {2216, P, "Invalid MarkerType! MarkerID={} Input MarkerType={}"},
    {2217, P, "Invalid MarkerType in Category ABCD! MarkerID={}"},
    {2218, P, "non-polymorhism marker! MarkerID={}"},
    {2219, P, "Invalid MarkerType in Category A=B! MarkerID={}"},
    {2220, P, "non-polymorhism marker! MarkerID={}"},
    {2221, P, "Invalid MarkerType in Category C=D! MarkerID={}"},
    {2222, P, "non-polymorhism marker! MarkerID={}"},
    {2223, P, "Invalid MarkerType in Category (AB=CD,A=CB=D,A=DB=C)! MarkerID={}"},
    {2224, P, "non-polymorhism marker! MarkerID={}"},
    {2225, P, "Invalid MarkerCategory (PopType=1, 2)! MarkerID={} Input MarkerCategory={}"},
    {2226, P, "Invalid MarkerCategory (PopType=3, 4)! MarkerID={} Input MarkerCategory={}"},
    {2227, P, "Invalid MarkerCategory! MarkerID={} ParentID={} Input MarkerCategory={}"},
    {2228, P, "Invalid MarkerType! MarkerID={}"},
    {2229, P, "non-polymorphism marker! MarkerID={} ParentID={}"},
    {2230, P, "two markers have same name! MarkerID1={} MarkerID2={} MarkerName={}"},

    // Anchors.
    {2301, P, "cannot read Anchor information! MarkerID={} Anchor info={}"},
    {2302, P, "Inconsistent MarkerName! MarkerID={} Name in Chromosome or MarkerType={} Name in Anchor info={}"},
    {2303, P, "Invalid Anchor value! MarkerID={} Anchor={}"},

    // Phenotypes.
    {2401, P, "cannot read Trait(Env)Name and Phenotype! Trait(Env)ID={}"},
    {2402, P, "Invalid phenotype found! Trait(Env)ID={} Trait(Env)Name={}"},
    {2403, P, "cannot read Env, Gtp, Blk, Phenotype! RowID={}"},
    {2404, P, "Invalid phenotype found! RowID={}"},
    {2405, P, "cannot read TraitName and Phenotype! TraitID={}"},
    {2406, P, "Invalid phenotype found! TraitID={} TraitName={}"},
    {2407, P, "Individual or line = {}; invalid phenotype = {}"},

    // Marker names of the map against the marker section.
    {2501, P,
     "Different marker names on chromosome and markertype!\n"
     "  Marker name in Chromosome={} ChID={} MarkerID={}\n"
     "  Marker name in Markertype={} MarkerID={}"},

    // Marker pairs of unexpected correlation (stand-alone runs).
    {2601, N,
     "Warning: these marker pairs have unexpected high correlation!\n"
     "   Marker1ID         Marker1Name Chromosome1   Position1   Marker2ID         Marker2Name "
     "Chromosome2   Position2 Correlation"},
    {2602, N, "{} {} {} {} {} {} {} {} {}"},

    // Outlier report: warnings to the log only (see PrintOutlierMessage).
    {2701, N,
     "Warning: possible outlier in phenotype!\n"
     "     TraitID    SampleID  PhenoValue OutlierStat     Comment"},
    {2702, N, "{}{}{}{}     TooHigh"},
    {2703, N, "{}{}{}{}      TooLow"},

    // The pairwise store.
    {2801, N,
     "Calculating pair-wise recombination frequency...\n"
     "The calculation may take minutes for marker number over 1000."},
    {2802, N, "Warning: estimated recombination frequency too high! IMarker={} JMarker={} RecFreq={} LOD score={}"},
    {2803, N, "Calculating recombination frequency was complted! Time (m) taken={}"},
    {2804, N, "Re-calculate pair-wise marker distance (cM) ..."},
    {2805, N, "Calculating marker distance was complted!"},
    // Pairs whose estimate is not a number (degenerate tables) are kept as unlinked.
    {2806, N, "Warning: no estimate for {} marker pairs! They are stored as unlinked: RecFreq=0.5 LOD score=0"},

    // Parameter section of stand-alone runs.
    {3001, P, "cannot read Indicator to handle missing phenotype!"},
    {3002, P, "Indicator to handle missing phenotype out of range [1,2]! Indicator for missing phenotype={}"},
    {3003, P, "cannot read single marker analysis Indicator, Threshold LOD!"},
    {3004, P, "Indicator for single marker analysis out of range [0,1]! SMA Indicator={}"},
    {3005, P, "Threshold LOD for single marker analysis too small (>0.5)! SMA Threshold LOD={}"},
    {3006, P, "cannot read IM Indicator, Threshold LOD, Step of Scanning!"},
    {3007, P, "Indicator for interval mapping out of range [0,1]! IM Indicator={}"},
    {3008, P, "Threshold LOD for interval mapping too small (>0.5)! IM Threshold LOD={}"},
    {3009, P, "Step (cM) for interval mapping should be greater than 0.01! IM Step={}"},
    {3010, P, "cannot read INCM Indicator, Threshold LOD, Step of Scanning!"},
    {3011, P, "Indicator for INCM out of range [0,1]! INCM Indicator={}"},
    {3012, P, "Threshold LOD for INCM too small (>0.5)! INCM Threshold LOD={}"},
    {3013, P, "Step (cM) for INCM should be greater than 0.01! INCM Step={}"},
    {3014, P, "PIN for INCM should be less than 0.25! INCM PIN={}"},
    {3015, P, "cannot read SGM Indicator, Threshold LOD, Freq of two tails!"},
    {3016, P, "Indicator for SGM out of range [0,1]! SGM Indicator={}"},
    {3017, P, "Threshold LOD for SGM too small (>0.5)! SGM Threshold LOD={}"},
    {3018, P, "Frequency of the bottom tail out of range (0.0,1.0)! FreqBottom={}"},
    {3019, P, "Frequency of the top tail out of range (0.0,1.0)! FreqTop={}"},
    {3020, P, "Frequencies of the two tails are too high (sum<1.00)! FreqBottom+FreqTop={}"},
    {3021, P, "cannot read IM-EPI Indicator, Threshold LOD, Step of Scanning!"},
    {3022, P, "Indicator for IM-EPI out of range [0,1]! IM Indicator={}"},
    {3023, P, "Threshold LOD for IM-EPI too small (>0.5)! IM Threshold LOD={}"},
    {3024, P, "Step (cM) for IM-EPI should be greater than 0.1! IM Step={}"},
    {3025, P, "cannot read INCM-EPI Indicator, Threshold LOD, Step of Scanning!"},
    {3026, P, "Indicator for INCM-EPI out of range [0,1]! INCM Indicator={}"},
    {3027, P, "Threshold LOD for INCM-EPI too small (>0.5)! INCM-EPI Threshold LOD={}"},
    {3028, P, "Step (cM) for INCM-EPI should be greater than 0.1! INCM-EPI Step={}"},
    {3029, P, "PIN for INCM-EPI should be less than 0.25! INCM PIN={}"},
    {3030, P, "cannot read RandomSeed, NumSimulations, OutputSimuPop, SILength!"},
    {3031, P, "RandomSeed must be a positive number! RandomSeed={}"},
    {3032, P, "NumSimulations must be a positive integer number NumSimulations={}"},
    {3033, P, "OutputSimuPop indicator out of range [0,1]! OutputSimuPop={}"},
    {3034, P, "Support Interval Length must be a poitive real number! SILength={}"},
    {3051, P, "cannot read conditional number to handle multicollinearity!"},
    {3052, P, "cannot read Indicator, LOD Threshold, PIN for additive mapping!"},
    {3053, P, "Indicator for additive mapping out of range [0,1]! INCM Indicator={}"},
    {3054, P, "LOD Threshold for additive mapping too small (>0.5)! LOD Threshold={}"},
    {3055, P, "PIN for additive mapping should be less than 0.25! PIN={}"},

    // SNP conversion: the reader, the rule from parents' and progeny's calls to marker types,
    // the warning for a marker that is deleted, and the log's account of how each marker's
    // polymorphism was decided.
    {3121, P, "cannot read Method to deal with missing markers in parent!"},
    {3122, P, "Method to deal with missing markers out of range [1,2]! Input value={}"},
    {3123, P, "cannot read MarkerType of parents in the SNP input file! MarkerID={}"},
    {3124, P, "Markertype of the parent out of range (AA,TT,GG,CC,AT,AG,AC,TG,TC,GC,NN)! MarkerID={} ParentID={} Input MarkerType={}"},
    {3125, P, "cannot read MarkerType of progenies in the SNP input file! MarkerID={}"},
    {3126, P, "Marker name in progenies does not match that in parents! MarkerID={}; Name in progenies={}; Name in parents={}"},
    {3127, P, "Markertype of the progeny out of range (AA,TT,GG,CC,AT,AG,AC,TG,TC,GC,NN)! MarkerID={} LineID={} Input MarkerType={}"},
    {3128, P, "illegal marker! MarkerID={} ParentID={} Input MarkerType={}"},
    {3129, N, "Warning: the marker will be deleted for non-polymorphism! MarkerID={}"},
    {3130, P, "Invalid MarkerType! MarkerID={} LineID={} Input MarkerType={}"},
    {3131, N, "MarkerID={}. Polymorphism was determined only by parent."},
    {3132, N, "MarkerID={}. Polymorphism was determined by progeny and parent."},
    {3133, N, "MarkerID={}. Polymorphism was determined only by progeny."},

    // Parameter section of the binning input file (read by the binning command).
    {3141, P, "cannot read threshold missing rate!"},
    {3142, P, "Threshold missing rate out of range (0.00, 0.10)! Threshold missing rate={}"},
    {3143, P, "cannot read threshold distortion P value!"},
    {3144, P, "Threshold distortion P value out of range (0.0, 0.1)! Threshold distortion P value={}"},
    {3145, P, "cannot read indicator to consider anchor information!"},
    {3146, P, "cannot read indicator to consider missing values!"},
    {3147, P, "cannot read method to delete redundant markers!"},
    {3148, P, "method to delete redundant markers out of range [1,2]! Method to delete redundant markers={}"},

    // Header of the AOV trial file.
    {3301, P, "cannot read Number of Rows in the input file!"},
    {3302, P, "Number of Rows (incl. title) cannot be less than 2! NumRows={}"},
    {3303, P, "cannot read Number of Columns in the input file!"},
    {3304, P, "Number of Columns cannot be less than 4! NumCols={}"},
    {3305, P, "cannot read title line (inlc. trait name) in the input file!"},

    // Family rows of the NAM file, in their own older form.
    {3506, N, "--Input error 3506: cannot read family name, and family size!\n  FamliyID ={}"},
    {3517, N, "--Input error 3517: family size out of range!\n  FamilyID, Family Size ={} {}"},
};

}  // namespace

std::span<const CatalogueEntry> Catalogue() { return kCatalogue; }

}  // namespace gae
