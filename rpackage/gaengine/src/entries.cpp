// The package's .Call entries: each reads or writes a genotype file through the library's own
// readers and writer and calls the same routines as the gaengine command.
#include <cmath>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "library_call.h"

#include <R_ext/Rdynload.h>

#include "engine/auto_lod.h"
#include "engine/grouping.h"
#include "engine/lod_tree.h"
#include "frame/store_bus_guard.h"
#include "frame/tool_profile.h"
#include "input/list_reader.h"
#include "input/map_tool_reader.h"
#include "pipeline/map_pipeline.h"
#include "pipeline/pipeline_steps.h"
#include "prep/map_input_text.h"
#include "report/text_file.h"
#include "twopoint/pair_store_file.h"
#include "vocabulary/message_code.h"

namespace gaer {

using namespace gae;

namespace {

std::string StringOf(SEXP value) { return CHAR(STRING_ELT(value, 0)); }

std::string Trimmed(const std::string& text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

// A list with names, filled in order.
class NamedList {
 public:
  explicit NamedList(int size) : list_(PROTECT(Rf_allocVector(VECSXP, size))), names_(PROTECT(Rf_allocVector(STRSXP, size))) {}
  void Add(const char* name, SEXP value) {
    SET_VECTOR_ELT(list_, next_, value);
    SET_STRING_ELT(names_, next_++, Rf_mkChar(name));
  }
  SEXP Done() {
    Rf_setAttrib(list_, R_NamesSymbol, names_);
    UNPROTECT(2);
    return list_;
  }

 private:
  SEXP list_, names_;
  int next_ = 0;
};

SEXP Strings(const std::vector<std::string>& texts) {
  SEXP out = PROTECT(Rf_allocVector(STRSXP, static_cast<R_xlen_t>(texts.size())));
  for (size_t k = 0; k < texts.size(); ++k) SET_STRING_ELT(out, static_cast<R_xlen_t>(k), Rf_mkChar(texts[k].c_str()));
  UNPROTECT(1);
  return out;
}

template <class T>
SEXP Integers(const std::vector<T>& values) {
  SEXP out = Rf_allocVector(INTSXP, static_cast<R_xlen_t>(values.size()));
  for (size_t k = 0; k < values.size(); ++k) INTEGER(out)[k] = static_cast<int>(values[k]);
  return out;
}

template <class T>
SEXP Doubles(const std::vector<T>& values) {
  SEXP out = Rf_allocVector(REALSXP, static_cast<R_xlen_t>(values.size()));
  for (size_t k = 0; k < values.size(); ++k) REAL(out)[k] = static_cast<double>(values[k]);
  return out;
}

// The library's refusal of `path`, in its own words.
[[noreturn]] void Refused(const std::string& path, const std::string& printed, const std::string& fallback) {
  throw UserError(path + ": " + LastLibraryError(printed, fallback));
}

MapToolInput ReadInput(const std::string& path, int tool_code) {
  MapToolInput data;
  std::string printed;
  {
    const CapturedOutput captured;
    MessageCode() = 0;
    InputFile in;
    if (!in.Open(path)) throw UserError("cannot open " + path);
    ReadMapToolInput(in, tool_code, data);
    in.Close();
    printed = captured.Text();
  }
  const int code = MessageCode();
  MessageCode() = 0;
  if (code != 0) Refused(path, printed, "the file was refused (library code " + std::to_string(code) + ")");
  return data;
}

// What a worker run tells the R thread for its progress display.
struct Progress {
  std::mutex lock;
  std::string pair_file;
  int64_t pair_bytes = 0;
  int starts = 0;  // random starts of the ordering logged so far
};

// Calls the R progress function with the stage and how far it has come (a fraction of the
// pair file, or the count of ordering starts). Its errors are R's own and are printed there.
void ShowProgress(SEXP show, Progress& progress) {
  if (!Rf_isFunction(show)) return;
  std::string stage;
  double amount = 0.0;
  {
    const std::lock_guard<std::mutex> hold(progress.lock);
    if (progress.starts > 0) {
      stage = "ordering";
      amount = progress.starts;
    } else if (!progress.pair_file.empty() && progress.pair_bytes > 0) {
      std::error_code error;
      const auto bytes = std::filesystem::file_size(progress.pair_file, error);
      stage = "pairs";
      amount = error ? 0.0 : std::min(1.0, static_cast<double>(bytes) / static_cast<double>(progress.pair_bytes));
    }
  }
  if (stage.empty()) return;
  SEXP call = PROTECT(Rf_lang3(show, Rf_mkString(stage.c_str()), Rf_ScalarReal(amount)));
  int failed = 0;
  R_tryEval(call, R_GlobalEnv, &failed);
  UNPROTECT(1);
}

// The settings the gaengine command runs a map with, from the tool's defaults.
MapPipelineSettings CommandSettings(const std::string& path, int tool_code) {
  const ToolProfile* tool = ProfileOfStageCode(tool_code);
  if (tool == nullptr) throw UserError("no map tool has the code " + std::to_string(tool_code));
  const StageDefaults& d = tool->defaults;
  MapPipelineSettings s;
  s.input_path = path;
  s.tool_code = tool_code;
  s.fallback_lod = ProfileOf(MapTool::kMAP).defaults.threshold;
  s.ordering.tour = {d.ordering_method, d.ordering_by, d.ordering_option, d.ordering_param1, d.ordering_param2};
  s.ordering.ripple_by = d.rippling_by;
  s.ordering.window_size = d.window_size;
  s.store_watch = &StoreBusGuard();
  return s;
}

// Runs the pair step on a worker (with progress) and opens the store it left.
void EnsurePairs(MapPipelineSettings& settings, const MapToolInput& data, SEXP show, PairStoreFile& store) {
  Progress progress;
  settings.pairs_starting = [&progress](const std::string& file, int64_t bytes) {
    const std::lock_guard<std::mutex> hold(progress.lock);
    progress.pair_file = file;
    progress.pair_bytes = bytes;
  };
  MapPipelineRecord record;
  std::string printed;
  UniformStream random;
  RunWatched([&](const std::atomic<bool>&) { EnsurePairFile(settings, data, random, record); },
             [&] { ShowProgress(show, progress); }, printed);
  ShowProgress(show, progress);
  if (!record.Ok()) Refused(settings.input_path, printed, record.failure_text);
  if (!store.Open(record.pair_file, PairRecordLength(settings.tool_code), data.mapping_function, settings.store_watch))
    throw UserError("cannot read the pairwise file " + record.pair_file);
}

SEXP GroupsOf(const MapPipelineRecord& r) {
  std::vector<std::string> names;
  for (const PipelineGroup& g : r.groups) names.push_back(g.name);
  SEXP markers = PROTECT(Rf_allocVector(VECSXP, static_cast<R_xlen_t>(r.groups.size())));
  SEXP positions = PROTECT(Rf_allocVector(VECSXP, static_cast<R_xlen_t>(r.groups.size())));
  for (size_t g = 0; g < r.groups.size(); ++g) {
    SET_VECTOR_ELT(markers, static_cast<R_xlen_t>(g), Integers(r.groups[g].markers));
    SET_VECTOR_ELT(positions, static_cast<R_xlen_t>(g), Doubles(r.groups[g].positions_cm));
  }
  NamedList out(3);
  out.Add("name", Strings(names));
  out.Add("markers", markers);
  out.Add("positions", positions);
  UNPROTECT(2);
  return out.Done();
}

SEXP ParentalMapsOf(const MapPipelineRecord& r) {
  SEXP maps = PROTECT(Rf_allocVector(VECSXP, static_cast<R_xlen_t>(r.parental_maps.size())));
  for (size_t p = 0; p < r.parental_maps.size(); ++p) {
    NamedList map(2);
    map.Add("markers", Integers(r.parental_maps[p].group_markers));
    map.Add("length", Doubles(r.parental_maps[p].group_lengths_cm));
    SET_VECTOR_ELT(maps, static_cast<R_xlen_t>(p), map.Done());
  }
  UNPROTECT(1);
  return maps;
}

SEXP RecordOf(const MapPipelineRecord& r) {
  std::vector<std::string> stages;
  std::vector<double> seconds;
  for (const auto& [stage, s] : r.stage_seconds) {
    stages.push_back(stage);
    seconds.push_back(s);
  }
  SEXP timing = PROTECT(Doubles(seconds));
  Rf_setAttrib(timing, R_NamesSymbol, Strings(stages));
  NamedList out(20);
  out.Add("population_type", Rf_ScalarInteger(r.population_type));
  out.Add("mapping_function", Rf_ScalarInteger(r.mapping_function));
  out.Add("individuals", Rf_ScalarInteger(r.num_individuals));
  out.Add("uninformative", Integers(r.uninformative));
  out.Add("lod", Rf_ScalarReal(r.lod_threshold));
  out.Add("lod_chosen", Rf_ScalarLogical(r.lod_chosen));
  out.Add("lod_reason", Rf_mkString(r.lod_reason.c_str()));
  out.Add("max_rf", Rf_ScalarReal(r.max_rf));
  out.Add("pairs_capped", Rf_ScalarReal(static_cast<double>(r.pairs_capped)));
  out.Add("distances", Rf_mkString(r.distances.c_str()));
  out.Add("ordering_note", Rf_mkString(r.ordering_note.c_str()));
  out.Add("groups", GroupsOf(r));
  out.Add("unlinked", Integers(r.unlinked));
  out.Add("dropped", Integers(r.dropped));
  out.Add("error_rate", Rf_ScalarReal(r.error_rate ? *r.error_rate : NA_REAL));
  out.Add("genotypes_set_missing", Rf_ScalarReal(static_cast<double>(r.genotypes_set_missing)));
  out.Add("corrected_file", Rf_mkString(r.corrected_file.c_str()));
  out.Add("parental_maps", ParentalMapsOf(r));
  out.Add("files_written", Strings(r.files_written));
  out.Add("seconds", timing);
  SEXP result = out.Done();
  UNPROTECT(1);
  return result;
}

}  // namespace

}  // namespace gaer

using namespace gaer;
using namespace gae;

extern "C" {

// A MAP, CDM or PLM file as read: header values, names, categories, one string of letters per
// marker (the individuals in file order) and the anchors.
SEXP gae_c_read(SEXP path, SEXP tool_code) {
  return Answer([&] {
    const MapToolInput data = ReadInput(StringOf(path), Rf_asInteger(tool_code));
    const size_t n = static_cast<size_t>(data.population_size);
    std::vector<std::string> names, letters;
    for (size_t m = 0; m < static_cast<size_t>(data.num_markers); ++m) {
      names.push_back(Trimmed(data.markers.names[m]));
      letters.emplace_back(data.markers.types.data() + m * n, n);
    }
    NamedList out(8);
    out.Add("population_type", Rf_ScalarInteger(data.population_type));
    out.Add("mapping_function", Rf_ScalarInteger(data.mapping_function));
    out.Add("space_type", Rf_ScalarInteger(data.space_type));
    out.Add("individuals", Rf_ScalarInteger(data.population_size));
    out.Add("names", Strings(names));
    out.Add("categories", Integers(data.markers.categories));
    out.Add("letters", Strings(letters));
    out.Add("anchors", Integers(data.anchors));
    return out.Done();
  });
}

// Writes a genotype file through the library's writer of map-tool inputs.
SEXP gae_c_write(SEXP path, SEXP tool_code, SEXP population_type, SEXP mapping_function, SEXP individuals,
                 SEXP names, SEXP categories, SEXP letters, SEXP anchors) {
  return Answer([&] {
    MapInputRecord record;
    record.tool_code = Rf_asInteger(tool_code);
    record.population_type = Rf_asInteger(population_type);
    record.mapping_function = Rf_asInteger(mapping_function);
    record.population_size = Rf_asInteger(individuals);
    for (R_xlen_t m = 0; m < XLENGTH(names); ++m) {
      record.names.push_back(CHAR(STRING_ELT(names, m)));
      record.categories.push_back(INTEGER(categories)[m]);
      record.letters.push_back(CHAR(STRING_ELT(letters, m)));
      record.anchors.push_back(INTEGER(anchors)[m]);
    }
    if (!WriteTextFile(StringOf(path), MapInputText(record))) throw UserError("cannot write " + StringOf(path));
    return R_NilValue;
  });
}

// Every pair's recombination frequency and LOD as the pair step stores them, in two
// markers-by-markers matrices.
SEXP gae_c_pairs(SEXP path, SEXP tool_code, SEXP threads, SEXP show) {
  return Answer([&] {
    MapPipelineSettings settings = CommandSettings(StringOf(path), Rf_asInteger(tool_code));
    settings.threads = Rf_asInteger(threads);
    const MapToolInput data = ReadInput(settings.input_path, settings.tool_code);
    PairStoreFile store;
    EnsurePairs(settings, data, show, store);
    const int64_t n = data.num_markers;
    SEXP rf = PROTECT(Rf_allocMatrix(REALSXP, static_cast<int>(n), static_cast<int>(n)));
    SEXP lod = PROTECT(Rf_allocMatrix(REALSXP, static_cast<int>(n), static_cast<int>(n)));
    for (int64_t i = 1; i <= n; ++i)
      for (int64_t j = 1; j <= n; ++j) {
        const size_t at = static_cast<size_t>((j - 1) * n + (i - 1));
        REAL(rf)[at] = i == j ? 0.0 : static_cast<double>(store.Table().Second(i, j));
        REAL(lod)[at] = i == j ? NA_REAL : -static_cast<double>(store.Table().First(i, j));
      }
    NamedList out(2);
    out.Add("rf", rf);
    out.Add("lod", lod);
    UNPROTECT(2);
    return out.Done();
  });
}

// The LOD tree over the automatic thresholds under the frequency cap, every marker's group in
// each row, and the threshold a run without one would group at.
SEXP gae_c_lod_tree(SEXP path, SEXP tool_code, SEXP max_rf, SEXP threads, SEXP show) {
  return Answer([&] {
    MapPipelineSettings settings = CommandSettings(StringOf(path), Rf_asInteger(tool_code));
    settings.threads = Rf_asInteger(threads);
    const MapToolInput data = ReadInput(settings.input_path, settings.tool_code);
    PairStoreFile store;
    EnsurePairs(settings, data, show, store);
    const int32_t n = data.num_markers;
    const float cap = static_cast<float>(Rf_asReal(max_rf));
    const std::vector<LodTreeRow> rows =
        LodTree(store.Table(), n, LodTreeThresholds(kAutoLodLow, kAutoLodHigh, kAutoLodStep), true, 0, cap);
    const GroupingLod choice = ChooseGroupingLod(rows, n, settings.fallback_lod);
    std::vector<float> threshold;
    std::vector<int32_t> groups, singletons, counted;
    SEXP membership = PROTECT(Rf_allocMatrix(INTSXP, n, static_cast<int>(rows.size())));
    for (size_t r = 0; r < rows.size(); ++r) {
      threshold.push_back(rows[r].threshold);
      groups.push_back(rows[r].groups);
      singletons.push_back(rows[r].singletons);
      counted.push_back(GroupsOfAtLeast(rows[r], FewMarkers(n)));
      for (int32_t m = 0; m < n; ++m) INTEGER(membership)[r * static_cast<size_t>(n) + static_cast<size_t>(m)] = rows[r].group[static_cast<size_t>(m)];
    }
    NamedList out(9);
    out.Add("threshold", Doubles(threshold));
    out.Add("groups", Integers(groups));
    out.Add("singletons", Integers(singletons));
    out.Add("counted", Integers(counted));
    out.Add("few", Rf_ScalarInteger(FewMarkers(n)));
    out.Add("membership", membership);
    out.Add("lod", Rf_ScalarReal(choice.threshold));
    out.Add("chosen", Rf_ScalarLogical(choice.chosen));
    out.Add("reason", Rf_mkString(choice.reason.c_str()));
    UNPROTECT(1);
    return out.Done();
  });
}

// The whole map as gaengine map makes it: RunMapPipeline on the file, its record returned.
// `lod` NA lets the LOD tree choose; `seed` NULL keeps the library's default stream, as the
// command does; `starts` NA the tool's default count of random starts.
SEXP gae_c_map(SEXP path, SEXP tool_code, SEXP lod, SEXP max_rf, SEXP error_rate, SEXP seed, SEXP starts, SEXP threads,
               SEXP show) {
  return Answer([&] {
    MapPipelineSettings settings = CommandSettings(StringOf(path), Rf_asInteger(tool_code));
    if (!ISNA(Rf_asReal(lod))) settings.lod = static_cast<float>(Rf_asReal(lod));
    settings.max_rf = static_cast<float>(Rf_asReal(max_rf));
    if (!ISNA(Rf_asReal(error_rate))) settings.error_rate = Rf_asReal(error_rate);
    if (Rf_asInteger(starts) != NA_INTEGER) settings.ordering.tour.starts = Rf_asInteger(starts);
    settings.threads = Rf_asInteger(threads);
    UniformStream random;
    if (!Rf_isNull(seed)) random.SetSeed({Rf_asInteger(seed), UniformStream::kDefaultSeed2});
    Progress progress;
    settings.pairs_starting = [&progress](const std::string& file, int64_t bytes) {
      const std::lock_guard<std::mutex> hold(progress.lock);
      progress.pair_file = file;
      progress.pair_bytes = bytes;
    };
    const std::atomic<bool>* stop = nullptr;
    settings.log = [&](std::string_view) {
      if (stop != nullptr && *stop) throw UserError("interrupted by the user");
      const std::lock_guard<std::mutex> hold(progress.lock);
      ++progress.starts;
    };
    MapPipelineRecord record;
    std::string printed;
    RunWatched(
        [&](const std::atomic<bool>& asked_to_stop) {
          stop = &asked_to_stop;
          MessageCode() = 0;
          record = RunMapPipeline(settings, random);
          MessageCode() = 0;
        },
        [&] { ShowProgress(show, progress); }, printed);
    if (!record.Ok()) Refused(settings.input_path, printed, record.failure_text);
    return RecordOf(record);
  });
}

}  // extern "C"

namespace {

// R's table takes every entry as one untyped function pointer; void (*)() carries any.
template <class Function>
DL_FUNC Entry(Function* function) {
  return reinterpret_cast<DL_FUNC>(reinterpret_cast<void (*)()>(function));
}

const R_CallMethodDef kEntries[] = {
    {"gae_c_read", Entry(&gae_c_read), 2},
    {"gae_c_write", Entry(&gae_c_write), 9},
    {"gae_c_pairs", Entry(&gae_c_pairs), 4},
    {"gae_c_lod_tree", Entry(&gae_c_lod_tree), 5},
    {"gae_c_map", Entry(&gae_c_map), 9},
    {nullptr, nullptr, 0}};

}  // namespace

extern "C" void R_init_gaengine(DllInfo* dll) {
  R_registerRoutines(dll, nullptr, kEntries, nullptr, nullptr);
  R_useDynamicSymbols(dll, FALSE);
}
