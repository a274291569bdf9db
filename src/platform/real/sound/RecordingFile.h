// The WAV file of a recording, whole at each moment: a process that is killed leaves all that was
// written, and a reader finds it.
#pragma once

#include <cstdint>
#include <string>

namespace zemo {

// One thread at a time. Throws SoundError where the file cannot be made or written.
class RecordingFile {
 public:
  // Makes the folder where it is missing. What stands under the path stays until the first frames
  // are written, which take its place at one blow. `channels`: 1 or 2; frames at kSampleRate.
  RecordingFile(const std::string& path, int channels);
  ~RecordingFile();  // closes; what fails then goes unheard
  RecordingFile(const RecordingFile&) = delete;
  RecordingFile& operator=(const RecordingFile&) = delete;

  // Interleaved. On a disk that is full in their middle as many frames as it takes are in the file.
  void Write(const int16_t* samples, int frames);
  void Sync();   // onto the disk itself
  void Close();  // and synced
  int64_t Frames() const { return frames_; }

 private:
  void TakePlace();
  [[noreturn]] void Fail(int error) const;

  const std::string path_, made_;  // where it belongs, and where it is made
  const int channels_;
  int file_ = -1;
  int64_t frames_ = 0;
  bool placed_ = false;
};

}  // namespace zemo
