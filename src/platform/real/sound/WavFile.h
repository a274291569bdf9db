// A WAV file being written: 16-bit, 44.1 kHz, stereo, in the plain PCM form that every reader
// knows.
#pragma once

#include <cstdint>
#include <string>

namespace zemo {

// One thread at a time. Throws SoundError where a file cannot be made or written, as on a full
// disk.
class WavFile {
 public:
  // Replaces the file. With `grows` it may come to more than 4 GB: its header keeps the room to
  // become one of 64-bit sizes then.
  WavFile(const std::string& path, bool grows);
  ~WavFile();  // closes; what fails then goes unheard
  WavFile(const WavFile&) = delete;
  WavFile& operator=(const WavFile&) = delete;

  void Write(const int16_t* stereo, int frames);
  void WriteHeader();  // so that the file, cut off here, can be read up to here
  void Close();        // completes the file

  // The header, whole, of a file of so many frames.
  static std::string Header(int64_t frames, bool grows);

 private:
  void WriteAll(const char* bytes, size_t count);
  [[noreturn]] void Fail() const;

  const std::string path_;
  const bool grows_;
  int file_ = -1;
  int64_t frames_ = 0;
};

}  // namespace zemo
