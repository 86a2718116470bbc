// What a host program or its machine can do to a run: set a decimal-comma locale, pass null
// out-pointers or a path length past its buffer, fill the disk, make the folder read-only, or
// leave a pipe or a link at a result name. Each run ends in the right result or a refusal.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "gaengine.h"
#include "support/export_call.h"
#include "support/temp_dir.h"
#include "frame/store_bus_guard.h"
#include "twopoint/pair_store_file.h"
#include "twopoint/pair_store_writer.h"

namespace gae {
namespace {

using testing::FileExists;
using testing::ReadText;
using testing::SourcePath;

void CopyExample(const std::string& name, const std::string& to) { testing::WriteText(to, ReadText(SourcePath("examples/" + name))); }

// Runs `body` in a child process and returns its exit status (-signal when killed): faults
// such as a file-size limit or a lost privilege stay out of the test process.
int InChild(const std::function<int()>& body, unsigned seconds = 60) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::alarm(seconds);  // a hang ends as SIGALRM, not as a stuck suite
    std::fflush(nullptr);
    ::_exit(body());
  }
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

// ---- The host's locale -------------------------------------------------------------------

// A locale whose decimal separator is a comma, or empty when the machine has none.
std::string DecimalCommaLocale() {
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "de_DE", "nl_NL.UTF-8"}) {
    if (std::setlocale(LC_ALL, name) != nullptr && std::localeconv()->decimal_point[0] == ',') {
      std::setlocale(LC_ALL, "C");
      return name;
    }
  }
  std::setlocale(LC_ALL, "C");
  return "";
}

class HostLocale : public testing::InTempDir {
 protected:
  void SetUp() override {
    InTempDir::SetUp();
    locale_ = DecimalCommaLocale();
    if (locale_.empty()) GTEST_SKIP() << "no decimal-comma locale here (make deps generates de_DE.UTF-8)";
  }
  void TearDown() override {
    std::setlocale(LC_ALL, "C");
    InTempDir::TearDown();
  }
  // As a GUI toolkit does from the environment.
  void SetHostLocale() { ASSERT_NE(std::setlocale(LC_ALL, locale_.c_str()), nullptr); }
  std::string locale_;
};

TEST_F(HostLocale, BundledExamplesCheckAndMapAsInTheCLocale) {
  const std::vector<std::pair<testing::PathExport, std::string>> checks = {
      {CheckErrorBIP, "ril_two_traits.bip"}, {CheckErrorAOV, "trial_two_traits.aov"}};
  // Each whole run starts from the same process state, with the ordering's seed fixed.
  ::setenv("GAENGINE_SEED", "31", 1);
  auto whole_run = [](const char* path) { return InChild([path] { return testing::CallOnPath(MAPAllByDefault, path); }); };
  CopyExample("f2_five_chromosomes.map", "c.map");
  ASSERT_EQ(whole_run("c.map"), 0);
  SetHostLocale();
  for (const auto& [check, name] : checks) {
    CopyExample(name, name);
    EXPECT_EQ(testing::CallOnPath(check, name), 0) << name;
  }
  CopyExample("three_maps_3b.cmp", "m.cmp");
  int space_type = 0, unit = 0, maps = 0, markers = 0, status = -1;
  CMPFindNumMarkers(5, "m.cmp", &space_type, &unit, &maps, &markers, &status);
  ASSERT_EQ(status, 0);
  std::vector<int> names(static_cast<std::size_t>(markers) * 35), held(markers), places(static_cast<std::size_t>(markers) * maps);
  CheckErrorCMP(5, "m.cmp", maps, markers, names.data(), held.data(), places.data(), &status);
  EXPECT_EQ(status, 0);
  CopyExample("f2_five_chromosomes.map", "h.map");
  ASSERT_EQ(whole_run("h.map"), 0);
  ::unsetenv("GAENGINE_SEED");
  // The same input gives the same reports byte for byte.
  for (const char* suffix : {".sum", ".mtp", ".rec", ".dis", ".lod", ".err"}) {
    const std::string host = ReadText(std::string("h") + suffix);
    EXPECT_EQ(host, ReadText(std::string("c") + suffix)) << suffix;
    EXPECT_EQ(host.find("*****"), std::string::npos) << suffix;
  }
}

// ---- What the host passes ----------------------------------------------------------------

class HostArguments : public testing::InTempDir {};

TEST_F(HostArguments, NullOutPointersAreRefusedNotWrittenThrough) {
  CopyExample("f2_five_chromosomes.map", "f.map");
  CopyExample("clonal_f1.cdm", "c.cdm");
  CopyExample("four_way_ril.plm", "p.plm");
  CopyExample("three_maps_3b.cmp", "m.cmp");
  CopyExample("training_and_breeding.gsp", "g.gsp");
  std::vector<int> ints(150 * 35 * 4, 0);
  std::vector<float> reals(150, 0.0f);
  int* i = ints.data();
  float* r = reals.data();
  int s = 0;
  // Each call passes one null where the library writes; the status must say 1101.
  const std::vector<std::pair<const char*, std::function<void()>>> calls = {
      {"MAPFindNumMarkers", [&] { MAPFindNumMarkers(5, "f.map", nullptr, &s); }},
      {"CDMFindNumMarkers", [&] { CDMFindNumMarkers(5, "c.cdm", nullptr, &s); }},
      {"PLMFindNumMarkers", [&] { PLMFindNumMarkers(5, "p.plm", nullptr, &s); }},
      {"SNPFindNumMarkers", [&] { SNPFindNumMarkers(2, 5, "f.map", nullptr, &s); }},
      {"BINFindNumMarkers", [&] { BINFindNumMarkers(2, 5, "f.map", nullptr, &s); }},
      {"CMPFindNumMarkers", [&] { CMPFindNumMarkers(5, "m.cmp", i, i, i, nullptr, &s); }},
      {"CheckErrorMAP", [&] { CheckErrorMAP(5, "f.map", 150, i, i, i, i, i, nullptr, i, r, r, &s); }},
      {"CheckErrorCDM", [&] { CheckErrorCDM(5, "c.cdm", 6, i, i, i, i, i, i, i, i, i, i, i, i, i, nullptr, i, r, r, &s); }},
      {"CheckErrorPLM", [&] { CheckErrorPLM(5, "p.plm", 6, i, i, i, i, i, i, i, i, i, i, i, i, r, nullptr, &s); }},
      {"CheckErrorCMP", [&] { CheckErrorCMP(5, "m.cmp", 3, 20, i, i, nullptr, &s); }},
      {"CheckErrorSNP", [&] { CheckErrorSNP(2, 5, "f.map", 10, nullptr, i, i, &s); }},
      {"CheckErrorBIN", [&] { CheckErrorBIN(2, 5, "f.map", 10, i, nullptr, i, &s); }},
  };
  for (const auto& [name, call] : calls) {
    s = 0;
    EXPECT_EQ(InChild([&] {
                call();
                return s == 1101 ? 0 : 1;
              }),
              0)
        << name;
  }
  int flag = 0;
  GSPFindNumTraits(5, "g.gsp", nullptr, &flag);
  EXPECT_EQ(flag & 1, 1);
  GSPFindTraitName(5, "g.gsp", 2, i, nullptr, &flag);
  EXPECT_EQ(flag & 1, 1);
  // The output exports have no status: they must write nothing.
  int order[6] = {1, 2, 3, 4, 5, 6}, size[1] = {6}, names[19];
  float position[6] = {0, 1, 2, 3, 4, 5};
  std::memset(names, ' ', sizeof names);
  EXPECT_EQ(InChild([&] {
              CDMOutput(5, "c.cdm", 6, nullptr, 6, 0, 1, names, size, order, position, 1, 1, 1, 1);
              MAPOutput(5, "f.map", 6, nullptr, 6, 0, 1, names, size, order, position, 1, 1, 1, 1);
              return FileExists("c.sum") || FileExists("f.sum") ? 1 : 0;
            }),
            0);
}

TEST_F(HostArguments, APathLengthPastTheBufferReadsOnlyToTheNul) {
  CopyExample("f2_five_chromosomes.map", "f.map");
  // The path ends a page that is followed by one no process may read.
  const long page = ::sysconf(_SC_PAGESIZE);
  char* pages = static_cast<char*>(::mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
  ASSERT_NE(pages, MAP_FAILED);
  ASSERT_EQ(::mprotect(pages + page, page, PROT_NONE), 0);
  char* path = pages + page - 6;
  std::memcpy(path, "f.map", 6);
  int n = 0, status = -1;
  EXPECT_EQ(InChild([&] {
              MAPFindNumMarkers(4096, path, &n, &status);
              return status == 0 && n == 150 ? 0 : 1;
            }),
            0);
  ::munmap(pages, 2 * page);
}

// ---- The machine: full disk, read-only folder, pipes and links ---------------------------

class HostMachine : public testing::InTempDir {};

TEST_F(HostMachine, AReadOnlyFolderIsRefusedBeforeTheRun) {
  ASSERT_EQ(::mkdir("ro", 0755), 0);
  CopyExample("f2_five_chromosomes.map", "ro/f.map");
  ASSERT_EQ(testing::CallOnPath(MAPAllByDefault, "ro/f.map"), 0);  // a complete pair file lies there
  std::remove("ro/f.sum");
  ASSERT_EQ(::chmod("ro", 0555), 0);
  ASSERT_EQ(::chmod(".", 0777), 0);
  const int child = InChild([] {
    // Root writes anywhere: the run drops to an ordinary user first.
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) return 2;
    int status = 0;
    MAPAllByDefault(8, "ro/f.map", &status);
    return status != 0 ? 0 : 1;
  });
  ::chmod("ro", 0755);
  EXPECT_EQ(child, 0);
  EXPECT_FALSE(FileExists("ro/f.sum"));
}

TEST_F(HostMachine, APipeOrALinkAtAResultNameIsReplacedNeverFollowed) {
  CopyExample("f2_five_chromosomes.map", "f.map");
  ASSERT_EQ(::mkfifo("f.LRD", 0644), 0);
  testing::WriteText("outside.txt", "kept\n");
  ASSERT_EQ(::symlink("outside.txt", "f.sum"), 0);
  int status = -1;
  EXPECT_EQ(InChild([&] {
              MAPAllByDefault(5, "f.map", &status);
              return status;
            }, 120),
            0);
  EXPECT_EQ(ReadText("outside.txt"), "kept\n");
  struct stat info {};
  ASSERT_EQ(::lstat("f.sum", &info), 0);
  EXPECT_TRUE(S_ISREG(info.st_mode));
  ASSERT_EQ(::lstat("f.LRD", &info), 0);
  EXPECT_EQ(info.st_size, 150 * 149 / 2 * 8);
}

// A run that maps from a pair file keeps reading it whole while another run replaces it.
TEST_F(HostMachine, APairFileReplacedUnderAReaderLeavesTheReaderItsRecords) {
  auto store = [](float value) {
    PairStoreJob job;
    job.lrd_name = "s.LRD";
    job.num_markers = 40;
    job.estimate = [value](int64_t, int64_t, float* record) { record[0] = -value, record[1] = 0.25f; };
    return WritePairStore(job);
  };
  ASSERT_TRUE(store(3.0f));
  PairStoreFile file;
  ASSERT_TRUE(file.Open("s.LRD", 2, 1));
  ASSERT_TRUE(store(7.0f));
  ASSERT_EQ(file.Table().num_records, 40 * 39 / 2);
  for (int64_t k = 0; k < file.Table().num_records; ++k) ASSERT_EQ(file.Table().records[2 * k], -3.0f);
}

// Another program cuts the pair file short while a run has it mapped, or between two stages:
// the run fails with 1101 instead of dying of SIGBUS or mapping from records that are not there.
TEST_F(HostMachine, APairFileCutShortUnderARunFailsItWithoutACrash) {
  CopyExample("f2_five_chromosomes.map", "f.map");
  const testing::MapCheck check = testing::CheckMap("f.map");
  ASSERT_EQ(check.status, 0);
  EXPECT_EQ(InChild([] {
              PairStoreFile store;
              if (!store.Open("f.LRD", 2, 1, &StoreBusGuard())) return 2;
              if (::truncate("f.LRD", 0) != 0) return 3;
              float sum = 0.0f;
              for (int64_t k = 0; k < store.Table().num_records; ++k) sum += store.Table().records[2 * k];
              return StoreBusGuard().TakeDamage() && sum == 0.0f ? 0 : 1;
            }),
            0);
  ASSERT_EQ(::truncate("f.LRD", 8 * 100), 0);
  std::vector<int> anchor = check.anchor, group(150, 0);
  EXPECT_EQ(InChild([&] {
              int status = 0;
              MAPGrouping(104, 1, 1, 3.0f, 150, anchor.data(), group.data(), &status);
              return status != 0 ? 0 : 1;
            }),
            0);
}

TEST_F(HostMachine, TheConsensusReaderRefusesPositionsThatAreNotNumbers) {
  // Positions (space type 2) in cM of two maps of two markers each.
  const std::string head = "2\n1\n2\nc1 2\nc2 2\n";
  for (const char* bad : {"NaN", "Inf", "-Infinity", "1e39"}) {
    testing::WriteText("m.cmp", head + "a c1 0\nb c1 " + bad + "\na c2 0\nb c2 5\n");
    int space_type = 0, unit = 0, maps = 0, markers = 0, status = -1;
    CMPFindNumMarkers(5, "m.cmp", &space_type, &unit, &maps, &markers, &status);
    EXPECT_EQ(status, 2103) << bad;
  }
}

}  // namespace
}  // namespace gae
