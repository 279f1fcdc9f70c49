#include "cli/BatchRun.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <iostream>
#include <map>
#include <mutex>
#include <new>
#include <sstream>
#include <system_error>
#include <thread>

#include "cli/Commands.h"
#include "cli/ProgressBar.h"
#include "cli/Writers.h"

namespace pictrace {
namespace cli {

namespace {

const int kMaxJobs = 1024;

// The record of the picture this thread runs in a batch; null outside one.
struct PictureRecord {
  std::ostringstream messages;
  std::ostringstream summary;
};
thread_local PictureRecord* t_pRecord = nullptr;

// The batch's progress: each picture counts for 100 steps, of which a
// running one has done the percentage its engine last reported.
class Batch {
 public:
  Batch(size_t count, const std::string& label)
      : m_percent(count, 0),
        m_bar(isatty(STDERR_FILENO) != 0, label + " " + std::to_string(count) + " pictures") {
    m_bar.SendMessage(WM_PICTRACE_PROGRESS_BEGIN);
    m_bar.SendMessage(WM_PICTRACE_PROGRESS_RANGE, 0, static_cast<LPARAM>(100 * count));
    m_bar.SendMessage(WM_PICTRACE_PROGRESS_POS, 0);
  }

  void SetPercent(size_t i, int percent) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_percent[i] = std::min(std::max(percent, m_percent[i]), 100);
    Redraw();
  }

  // A picture is done: its lines are printed together, above the bar.
  void Finish(size_t i, const std::string& input, bool ok, const PictureRecord& record) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_bar.Hide();
    m_nShown = -1;
    std::cerr << record.messages.str() << std::flush;
    std::cout << record.summary.str() << std::flush;
    if (!ok) m_failed.push_back(input);
    m_percent[i] = 100;
    Redraw();
  }

  // After the last picture: the bar's end, then the pictures that failed.
  bool End() {
    m_bar.SendMessage(WM_PICTRACE_PROGRESS_END);
    if (m_failed.empty()) return true;
    std::string names;
    for (const std::string& input : m_failed) names += (names.empty() ? "" : ", ") + input;
    Fail(std::to_string(m_failed.size()) + " of " + std::to_string(m_percent.size()) + " pictures failed: " + names);
    return false;
  }

 private:
  void Redraw() {
    long pos = 0;
    for (int p : m_percent) pos += p;
    if (pos == m_nShown) return;  // nothing new to draw
    m_nShown = pos;
    m_bar.SendMessage(WM_PICTRACE_PROGRESS_POS, static_cast<WPARAM>(pos));
  }

  std::mutex m_mutex;
  std::vector<int> m_percent;
  std::vector<std::string> m_failed;
  long m_nShown = -1;
  ProgressBarWnd m_bar;
};

// What one picture's engine reports, passed on to the batch.
class PictureProgress : public CWnd {
 public:
  PictureProgress(Batch& batch, size_t index) : m_batch(batch), m_index(index) {}
  LRESULT SendMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
    if (message == WM_PICTRACE_PROGRESS_RANGE && lParam > 0) m_nRange = static_cast<int>(lParam);
    if (message == WM_PICTRACE_PROGRESS_POS)
      m_batch.SetPercent(m_index, static_cast<int>(static_cast<long>(wParam) * 100 / m_nRange));
    return 0;
  }

 private:
  Batch& m_batch;
  size_t m_index;
  int m_nRange = 100;
};

std::string LongName(const CLI::Option* option) { return option->get_name(false, false); }

// The output paths of each picture in the folder, named after it; false
// (after a message) when two pictures would write the same file.
bool BatchPaths(const PictureSet& set, std::vector<std::vector<std::string>>& paths) {
  const std::vector<OutputFormat>& formats = OutputFormats();
  std::map<std::string, std::string> writer;  // output path -> the picture writing it
  for (const std::string& input : set.inputs) {
    const std::string stem = std::filesystem::path(input).stem().string();
    std::vector<std::string> outputs(formats.size());
    for (size_t f = 0; f < formats.size(); f++) {
      // Formats written by default (the SVG) always are; the others when asked.
      if (*formats[f].defaultPath == '\0' && set.formatOptions[f]->count() == 0) continue;
      outputs[f] = (std::filesystem::path(set.outDir) / (stem + formats[f].extension)).string();
      auto taken = writer.emplace(outputs[f], input);
      if (!taken.second) {
        Fail(taken.first->second + " and " + input + " would both write " + outputs[f] +
             "; pictures in a batch need different names");
        return false;
      }
    }
    paths.push_back(std::move(outputs));
  }
  return true;
}

}  // namespace

std::ostream& ErrorStream() { return t_pRecord ? t_pRecord->messages : std::cerr; }

std::ostream& SummaryStream() { return t_pRecord ? t_pRecord->summary : std::cerr; }

void AddPictureOptions(CLI::App* app, PictureSet& set, std::vector<std::string>& outputs) {
  app->add_option("file", set.inputs, "PNG, JPEG or BMP picture; several with --out-dir")->required();
  const std::vector<OutputFormat>& formats = OutputFormats();
  outputs.resize(formats.size());
  set.formatOptions.resize(formats.size());
  for (size_t i = 0; i < formats.size(); i++) {
    outputs[i] = formats[i].defaultPath;
    set.formatOptions[i] = app->add_option(formats[i].option, outputs[i], formats[i].help)->expected(0, 1);
  }
  app->add_option("--out-dir", set.outDir,
                  "write the outputs of each picture into DIR, named after it (x.png: DIR/x.svg); "
                  "--json, --preview and --report then take no file name");
  app->add_option("--jobs", set.jobs, "with --out-dir, pictures traced at once (default: one per core)")
      ->check(CLI::Range(1, kMaxJobs));
  AddMaxPixelsOption(app);
}

int RunPictures(const PictureSet& set, const std::vector<std::string>& outputs, const std::string& label,
                const PictureRunner& run) {
  const size_t count = set.inputs.size();
  if (set.outDir.empty()) {
    if (count > 1) return Fail(std::to_string(count) + " pictures given: several pictures need --out-dir DIR");
    for (size_t f = 0; f < outputs.size(); f++)
      if (set.formatOptions[f]->count() > 0 && outputs[f].empty())
        return Fail(LongName(set.formatOptions[f]) + " needs a file name (without --out-dir)");
    ProgressBarWnd bar(isatty(STDERR_FILENO) != 0, label);
    return run(set.inputs[0], outputs, bar);
  }

  // With --out-dir a format option takes no file name, so a picture file
  // right after one ("--json *.png") is one of the pictures.
  PictureSet pictures = set;
  for (size_t f = 0; f < outputs.size(); f++) {
    if (set.formatOptions[f]->count() == 0 || outputs[f].empty()) continue;
    if (!std::filesystem::is_regular_file(outputs[f]))
      return Fail(LongName(set.formatOptions[f]) + " " + outputs[f] + ": with --out-dir the outputs are named after " +
                  "the pictures; give " + LongName(set.formatOptions[f]) + " without a file name");
    pictures.inputs.insert(pictures.inputs.begin(), outputs[f]);
  }
  std::vector<std::vector<std::string>> paths;
  if (!BatchPaths(pictures, paths)) return kExitFailure;
  std::error_code error;
  std::filesystem::create_directories(set.outDir, error);
  if (!std::filesystem::is_directory(set.outDir))
    return Fail("--out-dir " + set.outDir + ": cannot make the folder" + (error ? ": " + error.message() : ""));

  const size_t total = pictures.inputs.size();
  const size_t cores = std::max(1u, std::thread::hardware_concurrency());
  const size_t jobs = std::min(total, set.jobs > 0 ? static_cast<size_t>(set.jobs) : cores);
  // Largest files first, so that a large picture does not start last and
  // keep one thread busy while the others are idle.
  std::vector<uintmax_t> bytes(total, 0);
  for (size_t i = 0; i < total; i++) {
    const uintmax_t size = std::filesystem::file_size(pictures.inputs[i], error);
    bytes[i] = error ? 0 : size;  // a missing file fails at once anyway
  }
  std::vector<size_t> order(total);
  for (size_t i = 0; i < total; i++) order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return bytes[a] > bytes[b]; });

  Batch batch(total, label);
  std::atomic<size_t> next{0};
  auto work = [&]() {
    for (size_t n; (n = next++) < total;) {
      const size_t i = order[n];
      PictureRecord record;
      t_pRecord = &record;
      PictureProgress progress(batch, i);
      int status = kExitFailure;
      try {
        status = run(pictures.inputs[i], paths[i], progress);
      } catch (const std::bad_alloc&) {
        Fail(pictures.inputs[i] + ": out of memory while " + label);
      } catch (const std::exception& e) {
        Fail(pictures.inputs[i] + ": " + e.what());
      }
      t_pRecord = nullptr;
      batch.Finish(i, pictures.inputs[i], status == 0, record);
    }
  };
  std::vector<std::thread> threads;
  for (size_t t = 0; t < jobs; t++) {
    try {
      threads.emplace_back(work);
    } catch (const std::system_error&) {
      if (threads.empty()) throw;
      break;  // fewer at once
    }
  }
  for (std::thread& t : threads) t.join();
  return batch.End() ? 0 : kExitFailure;
}

}  // namespace cli
}  // namespace pictrace
