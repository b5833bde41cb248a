// SPDX-License-Identifier: BSD-3-Clause
// Checks a promise in a child process and reads its outcome from a pipe.
#include "conformance/promise.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace conformance {

namespace {

constexpr unsigned longestSeconds = 300;

// One character, the expectation, a zero byte, the finding.
void send(int pipeEnd, const Outcome& outcome) {
  std::string message = outcome.kept ? "+" : "-";
  message += std::string(outcome.expectation.c_str()) + '\0' + outcome.finding;
  for (std::size_t sent = 0; sent < message.size();) {
    const ssize_t count = write(pipeEnd, message.data() + sent, message.size() - sent);
    if (count < 0 && errno != EINTR) {
      break;
    }
    sent += count < 0 ? 0 : static_cast<std::size_t>(count);
  }
}

std::string receive(int pipeEnd) {
  std::string message;
  std::array<char, 4096> piece{};
  ssize_t count = 0;
  while ((count = read(pipeEnd, piece.data(), piece.size())) > 0 || (count < 0 && errno == EINTR)) {
    message.append(piece.data(), count < 0 ? 0 : static_cast<std::size_t>(count));
  }
  return message;
}

std::string endOf(int status) {
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) {
    return "no end within " + std::to_string(longestSeconds) + " seconds";
  }
  if (WIFSIGNALED(status)) {
    return "the process ended by signal " + std::to_string(WTERMSIG(status)) + " (" +
           strsignal(WTERMSIG(status)) + ")";
  }
  return "the process ended with status " + std::to_string(WEXITSTATUS(status));
}

Outcome outcomeOf(const std::string& message, int status) {
  const std::size_t zero = message.find('\0');
  if (zero == std::string::npos) {
    return {false, "the check runs to its end", endOf(status)};
  }
  return {message[0] == '+', message.substr(1, zero - 1), message.substr(zero + 1)};
}

} // namespace

Outcome checkApart(const Promise& promise, const std::string& folder) {
  const auto start = std::chrono::steady_clock::now();
  std::array<int, 2> ends{};
  std::fflush(nullptr);
  if (pipe(ends.data()) != 0) {
    throw std::runtime_error(std::string("cannot make a pipe: ") + std::strerror(errno));
  }
  const pid_t child = fork();
  if (child < 0) {
    throw std::runtime_error(std::string("cannot start a process: ") + std::strerror(errno));
  }
  if (child == 0) {
    close(ends[0]);
    alarm(longestSeconds);
    send(ends[1], check(promise, folder));
    std::_Exit(0); // what the parent left half done is the parent's to end
  }
  close(ends[1]);
  const std::string message = receive(ends[0]);
  close(ends[0]);
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  Outcome outcome = outcomeOf(message, status);
  outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return outcome;
}

} // namespace conformance
