// ELF core files written from the crash path. The thread that dumps clones a helper
// process (a copy of this one, on a stack prepared in advance, without fork's handlers);
// the helper stops every thread of the process with ptrace, reads their registers and the
// memory through /proc/PID/mem and writes the file, while the dumping thread waits for it.
// Only system calls and code on fixed buffers run here: the heap may be locked by the
// thread that crashed.
#include "CoreDumpWriter_p.h"

#include <algorithm>
#include <asm/prctl.h>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <dirent.h>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <sched.h>
#include <sys/auxv.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/procfs.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#if !defined(__x86_64__)
#error "The core-dump writer knows the register layout of x86-64 only"
#endif

namespace RTE::Linux
{
namespace
{

constexpr std::size_t HelperStackSize = 256 * 1024;
constexpr unsigned HelperTimeoutSeconds = 30;
constexpr int MaxThreads = 2048;
constexpr int MaxMappings = 32768;
constexpr int MaxRanges = 65536;
constexpr int MaxModules = 4096;
constexpr std::size_t MapsTextSize = 16u << 20;
constexpr std::size_t NotesSize = 16u << 20;
constexpr std::size_t CopyBufferSize = 1u << 20;
// Stack memory above the stack pointer kept in the minimal and medium dumps: enough for
// deep call chains without writing a whole overflowed stack.
constexpr std::uint64_t StackLimit = 1u << 20;
constexpr std::uint64_t RedZone = 128;
constexpr std::uint64_t PageSize = 4096;

// Prepared outside the crash path.
char* g_helperStack = nullptr;
std::uint64_t g_executablePhdr = 0;
std::uint64_t g_executablePhdrSize = 0;
std::uint64_t g_executableDynamic = 0;
std::uint64_t g_executableDynamicSize = 0;

struct ThreadState
{
  pid_t tid;
  int pendingSignal; // a signal the thread stopped for instead of our interrupt
  user_regs_struct regs;
  user_fpregs_struct fpregs;
};

constexpr std::uint32_t Readable = 1;
constexpr std::uint32_t Writable = 2;
constexpr std::uint32_t Executable = 4;
constexpr std::uint32_t Shared = 8;

struct Mapping
{
  std::uint64_t start;
  std::uint64_t end;
  std::uint64_t offset;
  std::uint32_t flags;
  const char* name; // "" for anonymous memory
};

struct Range
{
  std::uint64_t start;
  std::uint64_t end;
  std::uint32_t flags;
};

// Everything the helper works with, in one anonymous mapping of its own.
struct Scratch
{
  ThreadState threads[MaxThreads];
  int threadCount;
  Mapping mappings[MaxMappings];
  int mappingCount;
  Range ranges[MaxRanges];
  int rangeCount;
  char mapsText[MapsTextSize];
  unsigned char notes[NotesSize];
  std::size_t notesUsed;
  unsigned char copyBuffer[CopyBufferSize];
  unsigned char auxv[4096];
  std::size_t auxvSize;
};

struct HelperArguments
{
  pid_t pid;
  int outputFd;
  int goFd;
  DumpDetail detail;
  const CrashContext* crash; // valid in the helper's copy of the memory
};

// --- small async-signal-safe helpers ---------------------------------------------------

void appendText(char*& out, const char* text)
{
  while (*text)
    *out++ = *text++;
}

void appendNumber(char*& out, unsigned long value)
{
  char digits[24];
  int n = 0;
  do
  {
    digits[n++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  while (n > 0)
    *out++ = digits[--n];
}

// "/proc/<pid>/<leaf>"
void procPath(char* out, pid_t pid, const char* leaf)
{
  appendText(out, "/proc/");
  appendNumber(out, static_cast<unsigned long>(pid));
  *out++ = '/';
  appendText(out, leaf);
  *out = '\0';
}

bool writeAll(int fd, const void* data, std::size_t size)
{
  const auto* bytes = static_cast<const unsigned char*>(data);
  while (size > 0)
  {
    const ssize_t n = write(fd, bytes, size);
    if (n < 0 && errno == EINTR)
      continue;
    if (n <= 0)
      return false;
    bytes += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

// Reads a whole /proc file into buffer; returns the size read (at most capacity).
std::size_t readFile(const char* path, void* buffer, std::size_t capacity)
{
  const int fd = open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0)
    return 0;
  std::size_t used = 0;
  while (used < capacity)
  {
    const ssize_t n = read(fd, static_cast<char*>(buffer) + used, capacity - used);
    if (n < 0 && errno == EINTR)
      continue;
    if (n <= 0)
      break;
    used += static_cast<std::size_t>(n);
  }
  close(fd);
  return used;
}

bool readMemory(int memFd, std::uint64_t address, void* out, std::size_t size)
{
  std::size_t done = 0;
  while (done < size)
  {
    const ssize_t n = pread(memFd, static_cast<char*>(out) + done, size - done, static_cast<off_t>(address + done));
    if (n < 0 && errno == EINTR)
      continue;
    if (n <= 0)
      return false;
    done += static_cast<std::size_t>(n);
  }
  return true;
}

std::uint64_t parseHex(const char*& p)
{
  std::uint64_t value = 0;
  for (;; ++p)
  {
    const char c = *p;
    if (c >= '0' && c <= '9')
      value = value * 16 + static_cast<std::uint64_t>(c - '0');
    else if (c >= 'a' && c <= 'f')
      value = value * 16 + static_cast<std::uint64_t>(c - 'a' + 10);
    else
      return value;
  }
}

void skipSpaces(const char*& p)
{
  while (*p == ' ')
    ++p;
}

void skipField(const char*& p)
{
  while (*p != ' ' && *p != '\n' && *p != '\0')
    ++p;
  skipSpaces(p);
}

// --- threads --------------------------------------------------------------------------

bool isAttached(const Scratch& s, pid_t tid)
{
  for (int i = 0; i < s.threadCount; ++i)
    if (s.threads[i].tid == tid)
      return true;
  return false;
}

bool attachThread(Scratch& s, pid_t tid)
{
  if (ptrace(PTRACE_SEIZE, tid, nullptr, nullptr) != 0)
    return false;
  if (ptrace(PTRACE_INTERRUPT, tid, nullptr, nullptr) != 0)
  {
    ptrace(PTRACE_DETACH, tid, nullptr, nullptr);
    return false;
  }
  int status = 0;
  pid_t waited;
  do
    waited = waitpid(tid, &status, __WALL);
  while (waited < 0 && errno == EINTR);
  if (waited != tid || !WIFSTOPPED(status))
    return false; // the thread ended meanwhile
  ThreadState& t = s.threads[s.threadCount];
  t.tid = tid;
  // A signal-delivery stop (no event in the high bits) swallowed a signal meant for the
  // thread; it is handed back at the detach.
  t.pendingSignal = (status >> 16) == 0 ? WSTOPSIG(status) : 0;
  if (ptrace(PTRACE_GETREGS, tid, nullptr, &t.regs) != 0)
    return false;
  if (ptrace(PTRACE_GETFPREGS, tid, nullptr, &t.fpregs) != 0)
    std::memset(&t.fpregs, 0, sizeof t.fpregs);
  ++s.threadCount;
  return true;
}

// Attaches every thread of pid; threads started while we attach are picked up by the
// next pass. Returns false when not a single thread could be stopped.
bool attachAllThreads(Scratch& s, pid_t pid)
{
  char path[64];
  procPath(path, pid, "task");
  for (int pass = 0; pass < 4; ++pass)
  {
    const int dir = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir < 0)
      return false;
    bool found = false;
    alignas(8) char buffer[4096];
    for (;;)
    {
      const long n = syscall(SYS_getdents64, dir, buffer, sizeof buffer);
      if (n <= 0)
        break;
      for (long offset = 0; offset < n;)
      {
        const auto* entry = reinterpret_cast<const struct dirent64*>(buffer + offset);
        offset += entry->d_reclen;
        const char* name = entry->d_name;
        pid_t tid = 0;
        for (; *name >= '0' && *name <= '9'; ++name)
          tid = tid * 10 + (*name - '0');
        if (*name != '\0' || tid == 0 || isAttached(s, tid) || s.threadCount >= MaxThreads)
          continue;
        if (attachThread(s, tid))
          found = true;
      }
    }
    close(dir);
    if (!found)
      break;
  }
  return s.threadCount > 0;
}

void detachAllThreads(Scratch& s)
{
  for (int i = 0; i < s.threadCount; ++i)
    ptrace(PTRACE_DETACH, s.threads[i].tid, nullptr,
           reinterpret_cast<void*>(static_cast<long>(s.threads[i].pendingSignal)));
}

// The crashing thread's registers where the fault happened, not inside the handler.
void takeCrashRegisters(ThreadState& t, const ucontext_t& context)
{
  const greg_t* g = context.uc_mcontext.gregs;
  user_regs_struct& r = t.regs;
  r.r8 = static_cast<unsigned long>(g[REG_R8]);
  r.r9 = static_cast<unsigned long>(g[REG_R9]);
  r.r10 = static_cast<unsigned long>(g[REG_R10]);
  r.r11 = static_cast<unsigned long>(g[REG_R11]);
  r.r12 = static_cast<unsigned long>(g[REG_R12]);
  r.r13 = static_cast<unsigned long>(g[REG_R13]);
  r.r14 = static_cast<unsigned long>(g[REG_R14]);
  r.r15 = static_cast<unsigned long>(g[REG_R15]);
  r.rdi = static_cast<unsigned long>(g[REG_RDI]);
  r.rsi = static_cast<unsigned long>(g[REG_RSI]);
  r.rbp = static_cast<unsigned long>(g[REG_RBP]);
  r.rbx = static_cast<unsigned long>(g[REG_RBX]);
  r.rdx = static_cast<unsigned long>(g[REG_RDX]);
  r.rax = static_cast<unsigned long>(g[REG_RAX]);
  r.rcx = static_cast<unsigned long>(g[REG_RCX]);
  r.rsp = static_cast<unsigned long>(g[REG_RSP]);
  r.rip = static_cast<unsigned long>(g[REG_RIP]);
  r.eflags = static_cast<unsigned long>(g[REG_EFL]);
  r.orig_rax = static_cast<unsigned long>(-1);
  if (context.uc_mcontext.fpregs != nullptr)
    std::memcpy(&t.fpregs, context.uc_mcontext.fpregs, sizeof t.fpregs);
}

// --- memory ---------------------------------------------------------------------------

bool readMappings(Scratch& s, pid_t pid)
{
  char path[64];
  procPath(path, pid, "maps");
  const std::size_t size = readFile(path, s.mapsText, MapsTextSize - 1);
  if (size == 0)
    return false;
  s.mapsText[size] = '\0';
  char* line = s.mapsText;
  while (*line != '\0' && s.mappingCount < MaxMappings)
  {
    char* lineEnd = line;
    while (*lineEnd != '\n' && *lineEnd != '\0')
      ++lineEnd;
    const bool last = *lineEnd == '\0';
    *lineEnd = '\0';
    // start-end perms offset dev inode [name]
    const char* p = line;
    Mapping& m = s.mappings[s.mappingCount];
    m.start = parseHex(p);
    if (*p == '-')
    {
      ++p;
      m.end = parseHex(p);
      skipSpaces(p);
      m.flags = (p[0] == 'r' ? Readable : 0) | (p[1] == 'w' ? Writable : 0) | (p[2] == 'x' ? Executable : 0) |
                (p[3] == 's' ? Shared : 0);
      skipField(p);
      m.offset = parseHex(p);
      skipSpaces(p);
      skipField(p); // device
      skipField(p); // inode
      m.name = p;
      if (m.end > m.start)
        ++s.mappingCount;
    }
    if (last)
      break;
    line = lineEnd + 1;
  }
  return s.mappingCount > 0;
}

bool isFileBacked(const Mapping& m)
{
  return m.name[0] == '/';
}

// Memory a debugger cannot use or the kernel refuses to hand out.
// The helper's working memory: excluded when the helper dumps its own copy.
std::uint64_t g_scratchStart = 0;
std::uint64_t g_scratchEnd = 0;

bool isSpecial(const Mapping& m)
{
  return std::strcmp(m.name, "[vvar]") == 0 || std::strcmp(m.name, "[vsyscall]") == 0 || (m.flags & Readable) == 0 ||
         (m.start < g_scratchEnd && g_scratchStart < m.end);
}

const Mapping* findMapping(const Scratch& s, std::uint64_t address)
{
  for (int i = 0; i < s.mappingCount; ++i)
    if (address >= s.mappings[i].start && address < s.mappings[i].end)
      return &s.mappings[i];
  return nullptr;
}

std::uint32_t segmentFlags(std::uint32_t flags)
{
  return ((flags & Readable) ? PF_R : 0) | ((flags & Writable) ? PF_W : 0) | ((flags & Executable) ? PF_X : 0);
}

// Adds [start, end) clipped to the readable mapping that holds start.
void addRange(Scratch& s, std::uint64_t start, std::uint64_t end)
{
  const Mapping* m = findMapping(s, start);
  if (m == nullptr || isSpecial(*m) || s.rangeCount >= MaxRanges)
    return;
  end = std::min(end, m->end);
  if (end <= start)
    return;
  s.ranges[s.rangeCount++] = Range{start, end, segmentFlags(m->flags)};
}

void addMapping(Scratch& s, const Mapping& m)
{
  if (!isSpecial(m) && s.rangeCount < MaxRanges)
    s.ranges[s.rangeCount++] = Range{m.start, m.end, segmentFlags(m.flags)};
}

// The loader's list of modules (r_debug and its link_map chain with their names) and the
// program's own headers: what a debugger follows to find the loaded libraries.
void addModuleList(Scratch& s, int memFd)
{
  addRange(s, g_executablePhdr, g_executablePhdr + g_executablePhdrSize);
  addRange(s, g_executableDynamic, g_executableDynamic + g_executableDynamicSize);
  const auto debugAddress = reinterpret_cast<std::uint64_t>(&_r_debug);
  r_debug debug;
  if (!readMemory(memFd, debugAddress, &debug, sizeof debug))
    return;
  addRange(s, debugAddress, debugAddress + sizeof debug);
  auto address = reinterpret_cast<std::uint64_t>(debug.r_map);
  for (int i = 0; i < MaxModules && address != 0; ++i)
  {
    link_map module;
    if (!readMemory(memFd, address, &module, sizeof module))
      return;
    addRange(s, address, address + sizeof module);
    const auto name = reinterpret_cast<std::uint64_t>(module.l_name);
    char text[512];
    const Mapping* holder = findMapping(s, name);
    if (holder != nullptr)
    {
      const std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(sizeof text, holder->end - name));
      if (readMemory(memFd, name, text, size))
      {
        const void* nul = std::memchr(text, '\0', size);
        if (nul != nullptr)
          addRange(s, name, name + static_cast<std::uint64_t>(static_cast<const char*>(nul) - text) + 1);
      }
    }
    address = reinterpret_cast<std::uint64_t>(module.l_next);
  }
}

// A private writable file mapping (a module's data), or the anonymous mapping right after
// one, which holds the module's .bss.
bool isModuleData(const Scratch& s, int i)
{
  const Mapping& m = s.mappings[i];
  if ((m.flags & Writable) == 0 || (m.flags & Shared) != 0)
    return false;
  if (isFileBacked(m))
    return true;
  const Mapping* before = i > 0 ? &s.mappings[i - 1] : nullptr;
  return m.name[0] == '\0' && before != nullptr && isFileBacked(*before) && (before->flags & Writable) != 0 &&
         before->end == m.start;
}

void chooseRanges(Scratch& s, DumpDetail detail, int memFd)
{
  if (detail == DumpDetail::Full)
  {
    for (int i = 0; i < s.mappingCount; ++i)
      addMapping(s, s.mappings[i]);
    return;
  }
  for (int i = 0; i < s.threadCount; ++i)
  {
    const ThreadState& t = s.threads[i];
    const std::uint64_t sp = (t.regs.rsp - RedZone) & ~std::uint64_t{15};
    addRange(s, sp, sp + StackLimit);
    // The thread's control block and thread-local data around the fs base.
    addRange(s, t.regs.fs_base > PageSize ? t.regs.fs_base - PageSize : 0, t.regs.fs_base + PageSize);
  }
  for (int i = 0; i < s.mappingCount; ++i)
  {
    const Mapping& m = s.mappings[i];
    if (std::strcmp(m.name, "[vdso]") == 0)
      addMapping(s, m); // the debugger reads the vDSO's symbols and unwind data from memory
  }
  addModuleList(s, memFd);
  for (int i = 0; i < s.mappingCount; ++i)
    if (isModuleData(s, i) &&
        std::strstr(s.mappings[i > 0 && s.mappings[i].name[0] == '\0' ? i - 1 : i].name, "/ld-linux") != nullptr)
      addMapping(s, s.mappings[i]);
  if (detail == DumpDetail::Medium)
  {
    // Writable data of the modules: their private writable file mappings and the
    // anonymous mapping right after one of them, which holds the module's .bss.
    for (int i = 0; i < s.mappingCount; ++i)
    {
      if (isModuleData(s, i))
        addMapping(s, s.mappings[i]);
    }
  }
}

// Sorted, with overlapping and touching ranges joined.
void mergeRanges(Scratch& s)
{
  std::sort(s.ranges, s.ranges + s.rangeCount, [](const Range& a, const Range& b) { return a.start < b.start; });
  int out = 0;
  for (int i = 0; i < s.rangeCount; ++i)
  {
    if (out > 0 && s.ranges[i].start <= s.ranges[out - 1].end)
    {
      Range& previous = s.ranges[out - 1];
      previous.end = std::max(previous.end, s.ranges[i].end);
      previous.flags |= s.ranges[i].flags;
    }
    else
      s.ranges[out++] = s.ranges[i];
  }
  s.rangeCount = out;
}

// --- notes ----------------------------------------------------------------------------

bool addNote(Scratch& s, std::uint32_t type, const void* data, std::size_t size)
{
  static const char name[] = "CORE";
  const std::size_t nameSize = (sizeof name + 3) & ~std::size_t{3};
  const std::size_t dataSize = (size + 3) & ~std::size_t{3};
  if (s.notesUsed + sizeof(Elf64_Nhdr) + nameSize + dataSize > NotesSize)
    return false;
  unsigned char* out = s.notes + s.notesUsed;
  Elf64_Nhdr header{};
  header.n_namesz = sizeof name;
  header.n_descsz = static_cast<Elf64_Word>(size);
  header.n_type = type;
  std::memcpy(out, &header, sizeof header);
  out += sizeof header;
  std::memset(out, 0, nameSize + dataSize);
  std::memcpy(out, name, sizeof name);
  std::memcpy(out + nameSize, data, size);
  s.notesUsed += sizeof header + nameSize + dataSize;
  return true;
}

bool addThreadNotes(Scratch& s, const ThreadState& t, pid_t pid, int signalNumber)
{
  elf_prstatus status{};
  status.pr_info.si_signo = signalNumber;
  status.pr_cursig = static_cast<short>(signalNumber);
  status.pr_pid = t.tid;
  status.pr_pgrp = getpgid(pid);
  status.pr_sid = getsid(pid);
  static_assert(sizeof status.pr_reg == sizeof t.regs, "register layouts differ");
  std::memcpy(&status.pr_reg, &t.regs, sizeof t.regs);
  status.pr_fpvalid = 1;
  return addNote(s, NT_PRSTATUS, &status, sizeof status) && addNote(s, NT_FPREGSET, &t.fpregs, sizeof t.fpregs);
}

bool addProcessNotes(Scratch& s, pid_t pid, pid_t source, const CrashContext* crash)
{
  elf_prpsinfo info{};
  info.pr_sname = 'R';
  info.pr_uid = getuid();
  info.pr_gid = getgid();
  info.pr_pid = pid;
  info.pr_pgrp = getpgid(pid);
  info.pr_sid = getsid(pid);
  char path[64];
  procPath(path, source, "comm");
  std::size_t n = readFile(path, info.pr_fname, sizeof info.pr_fname - 1);
  if (n > 0 && info.pr_fname[n - 1] == '\n')
    info.pr_fname[n - 1] = '\0';
  procPath(path, source, "cmdline");
  n = readFile(path, info.pr_psargs, sizeof info.pr_psargs - 1);
  for (std::size_t i = 0; i + 1 < n; ++i)
    if (info.pr_psargs[i] == '\0')
      info.pr_psargs[i] = ' ';
  if (!addNote(s, NT_PRPSINFO, &info, sizeof info))
    return false;
  if (crash != nullptr && crash->info != nullptr && !addNote(s, NT_SIGINFO, crash->info, sizeof(siginfo_t)))
    return false;
  procPath(path, source, "auxv");
  s.auxvSize = readFile(path, s.auxv, sizeof s.auxv);
  if (s.auxvSize > 0 && !addNote(s, NT_AUXV, s.auxv, s.auxvSize))
    return false;

  // NT_FILE: count, page size, (start, end, offset in pages) per file mapping, then the
  // names. Built in place after a note header left free for now.
  const std::size_t headerAt = s.notesUsed;
  const std::size_t dataAt = headerAt + sizeof(Elf64_Nhdr) + 8;
  std::uint64_t count = 0;
  for (int i = 0; i < s.mappingCount; ++i)
    count += isFileBacked(s.mappings[i]) ? 1 : 0;
  std::size_t used = 16 + count * 24;
  if (dataAt + used > NotesSize)
    return false;
  // Notes are only 4-byte aligned: the words are copied, not stored through a pointer.
  unsigned char* entry = s.notes + dataAt;
  auto putWord = [&entry](std::uint64_t word)
  {
    std::memcpy(entry, &word, sizeof word);
    entry += sizeof word;
  };
  putWord(count);
  putWord(PageSize);
  for (int i = 0; i < s.mappingCount; ++i)
  {
    const Mapping& m = s.mappings[i];
    if (!isFileBacked(m))
      continue;
    const std::size_t length = std::strlen(m.name) + 1;
    if (dataAt + used + length + 4 > NotesSize)
      return false;
    putWord(m.start);
    putWord(m.end);
    putWord(m.offset / PageSize);
    std::memcpy(s.notes + dataAt + used, m.name, length);
    used += length;
  }
  Elf64_Nhdr header{};
  header.n_namesz = 5;
  header.n_descsz = static_cast<Elf64_Word>(used);
  header.n_type = NT_FILE;
  std::memcpy(s.notes + headerAt, &header, sizeof header);
  std::memcpy(s.notes + headerAt + sizeof header, "CORE\0\0\0", 8);
  const std::size_t padded = (used + 3) & ~std::size_t{3};
  std::memset(s.notes + dataAt + used, 0, padded - used);
  s.notesUsed = dataAt + padded;
  return true;
}

// --- the file -------------------------------------------------------------------------

bool writeFile(Scratch& s, int fd, int memFd)
{
  const std::size_t phdrCount = 1 + static_cast<std::size_t>(s.rangeCount);
  const std::uint64_t notesOffset = sizeof(Elf64_Ehdr) + phdrCount * sizeof(Elf64_Phdr);
  std::uint64_t dataOffset = (notesOffset + s.notesUsed + PageSize - 1) & ~(PageSize - 1);

  Elf64_Ehdr ehdr{};
  std::memcpy(ehdr.e_ident, ELFMAG, SELFMAG);
  ehdr.e_ident[EI_CLASS] = ELFCLASS64;
  ehdr.e_ident[EI_DATA] = ELFDATA2LSB;
  ehdr.e_ident[EI_VERSION] = EV_CURRENT;
  ehdr.e_ident[EI_OSABI] = ELFOSABI_NONE;
  ehdr.e_type = ET_CORE;
  ehdr.e_machine = EM_X86_64;
  ehdr.e_version = EV_CURRENT;
  ehdr.e_phoff = sizeof(Elf64_Ehdr);
  ehdr.e_ehsize = sizeof(Elf64_Ehdr);
  ehdr.e_phentsize = sizeof(Elf64_Phdr);
  ehdr.e_phnum = static_cast<Elf64_Half>(phdrCount < PN_XNUM ? phdrCount : PN_XNUM);
  if (phdrCount >= PN_XNUM)
    return false; // would need the extended numbering through section 0
  if (!writeAll(fd, &ehdr, sizeof ehdr))
    return false;

  Elf64_Phdr note{};
  note.p_type = PT_NOTE;
  note.p_offset = notesOffset;
  note.p_filesz = s.notesUsed;
  note.p_align = 4;
  if (!writeAll(fd, &note, sizeof note))
    return false;
  std::uint64_t offset = dataOffset;
  for (int i = 0; i < s.rangeCount; ++i)
  {
    const Range& r = s.ranges[i];
    Elf64_Phdr load{};
    load.p_type = PT_LOAD;
    load.p_flags = r.flags;
    load.p_offset = offset;
    load.p_vaddr = r.start;
    load.p_filesz = r.end - r.start;
    load.p_memsz = r.end - r.start;
    load.p_align = 1;
    if (!writeAll(fd, &load, sizeof load))
      return false;
    offset += load.p_filesz;
  }
  if (!writeAll(fd, s.notes, s.notesUsed))
    return false;
  std::memset(s.copyBuffer, 0, PageSize);
  const std::uint64_t padding = dataOffset - notesOffset - s.notesUsed;
  if (!writeAll(fd, s.copyBuffer, padding))
    return false;

  for (int i = 0; i < s.rangeCount; ++i)
  {
    for (std::uint64_t at = s.ranges[i].start; at < s.ranges[i].end;)
    {
      const std::size_t chunk = static_cast<std::size_t>(std::min<std::uint64_t>(CopyBufferSize, s.ranges[i].end - at));
      // Memory that cannot be read (a guard page, a mapping gone meanwhile) is written
      // as zeros so that the offsets of what follows stay right.
      if (!readMemory(memFd, at, s.copyBuffer, chunk))
        for (std::size_t page = 0; page < chunk; page += PageSize)
        {
          const std::size_t size = std::min<std::size_t>(PageSize, chunk - page);
          if (!readMemory(memFd, at + page, s.copyBuffer + page, size))
            std::memset(s.copyBuffer + page, 0, size);
        }
      if (!writeAll(fd, s.copyBuffer, chunk))
        return false;
      at += chunk;
    }
  }
  return true;
}

int helperMain(void* argument)
{
  const auto& a = *static_cast<const HelperArguments*>(argument);
  // The helper inherited the host's handlers and the crashed thread's signal mask: a
  // fault of its own must end it, and so must the alarm that keeps a stuck dump from
  // holding up the process, which waits for us.
  sigset_t unblock;
  sigemptyset(&unblock);
  for (int signalNumber : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, SIGALRM})
  {
    signal(signalNumber, SIG_DFL);
    sigaddset(&unblock, signalNumber);
  }
  sigprocmask(SIG_UNBLOCK, &unblock, nullptr);
  alarm(HelperTimeoutSeconds);
  char go = 0;
  while (read(a.goFd, &go, 1) < 0 && errno == EINTR)
  {
  }
  close(a.goFd);
  if (go != 'g')
    _exit(2);

  void* memory =
      mmap(nullptr, sizeof(Scratch), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED)
    _exit(3);
  auto& s = *static_cast<Scratch*>(memory);

  g_scratchStart = reinterpret_cast<std::uint64_t>(memory);
  g_scratchEnd = g_scratchStart + sizeof(Scratch);

  // Where ptrace is refused (a container's system-call filter, Yama's strictest mode) the
  // helper dumps its own copy of the memory, taken at the clone, with the one thread whose
  // registers it knows: the crashed one.
  pid_t source = a.pid;
  if (!attachAllThreads(s, a.pid))
  {
    if (a.crash == nullptr || a.crash->context == nullptr)
      _exit(4);
    source = getpid();
    ThreadState& t = s.threads[0];
    std::memset(&t, 0, sizeof t);
    t.tid = a.crash->threadId;
    unsigned long fsBase = 0;
    syscall(SYS_arch_prctl, ARCH_GET_FS, &fsBase); // the clone kept the crashed thread's
    t.regs.fs_base = fsBase;
    t.regs.cs = 0x33; // the 64-bit user code and stack segments
    t.regs.ss = 0x2b;
    s.threadCount = 1;
  }
  // The crashing thread first: a debugger shows the first thread of the file as the
  // current one.
  int signalNumber = 0;
  if (a.crash != nullptr)
  {
    signalNumber = a.crash->signalNumber;
    for (int i = 0; i < s.threadCount; ++i)
      if (s.threads[i].tid == a.crash->threadId)
      {
        if (a.crash->context != nullptr)
          takeCrashRegisters(s.threads[i], *a.crash->context);
        std::swap(s.threads[0], s.threads[i]);
        break;
      }
  }
  char path[64];
  procPath(path, source, "mem");
  const int memFd = open(path, O_RDONLY | O_CLOEXEC);
  bool written = memFd >= 0 && readMappings(s, source);
  if (written)
  {
    chooseRanges(s, a.detail, memFd);
    mergeRanges(s);
    written = addThreadNotes(s, s.threads[0], a.pid, signalNumber) && addProcessNotes(s, a.pid, source, a.crash);
    for (int i = 1; written && i < s.threadCount; ++i)
      written = addThreadNotes(s, s.threads[i], a.pid, signalNumber);
    written = written && writeFile(s, a.outputFd, memFd);
  }
  detachAllThreads(s);
  _exit(written ? 0 : 5);
}

} // namespace

bool prepareCoreDumpWriter()
{
  if (g_helperStack != nullptr)
    return true;
  void* stack = mmap(nullptr, HelperStackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (stack == MAP_FAILED)
    return false;
  // The program's own program headers and dynamic section, where a debugger starts its
  // search for the loaded libraries.
  const auto phdr = getauxval(AT_PHDR);
  const auto count = getauxval(AT_PHNUM);
  const auto* headers = reinterpret_cast<const Elf64_Phdr*>(phdr);
  std::uint64_t bias = 0;
  for (unsigned long i = 0; i < count; ++i)
    if (headers[i].p_type == PT_PHDR)
      bias = phdr - headers[i].p_vaddr;
  for (unsigned long i = 0; i < count; ++i)
    if (headers[i].p_type == PT_DYNAMIC)
    {
      g_executableDynamic = bias + headers[i].p_vaddr;
      g_executableDynamicSize = headers[i].p_memsz;
    }
  g_executablePhdr = phdr;
  g_executablePhdrSize = count * getauxval(AT_PHENT);
  g_helperStack = static_cast<char*>(stack);
  return true;
}

bool writeCoreDump(int fd, DumpDetail detail, const CrashContext* crash)
{
  if (g_helperStack == nullptr)
    return false;
  int go[2];
  if (pipe2(go, O_CLOEXEC) != 0)
    return false;
  HelperArguments arguments{getpid(), fd, go[0], detail, crash};
  // No CLONE_VM: the helper works on its own copy of the memory, so the stack prepared
  // above can serve any number of dumps. Exit signal 0 keeps the host's SIGCHLD handling
  // out of it; we wait with __WALL.
  const pid_t helper = clone(&helperMain, g_helperStack + HelperStackSize, 0, &arguments);
  close(go[0]);
  if (helper < 0)
  {
    close(go[1]);
    return false;
  }
  // Yama's restricted ptrace lets only an ancestor trace us, unless we name the tracer.
  prctl(PR_SET_PTRACER, helper, 0, 0, 0);
  const char signal = 'g';
  const bool started = writeAll(go[1], &signal, 1);
  close(go[1]);
  int status = 0;
  pid_t waited;
  do
    waited = waitpid(helper, &status, __WALL);
  while (waited < 0 && errno == EINTR);
  prctl(PR_SET_PTRACER, 0, 0, 0, 0);
  return started && waited == helper && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void formatDumpFileName(char* out, std::time_t utcSeconds, long utcOffsetSeconds)
{
  const long long local = static_cast<long long>(utcSeconds) + utcOffsetSeconds;
  long long days = local / 86400;
  long long seconds = local % 86400;
  if (seconds < 0)
  {
    seconds += 86400;
    --days;
  }
  // Civil date from days since 1970-01-01 (proleptic Gregorian calendar).
  const long long z = days + 719468;
  const long long era = (z >= 0 ? z : z - 146096) / 146097;
  const long long dayOfEra = z - era * 146097;
  const long long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const long long mp = (5 * dayOfYear + 2) / 153;
  const long long day = dayOfYear - (153 * mp + 2) / 5 + 1;
  const long long month = mp < 10 ? mp + 3 : mp - 9;
  const long long year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);

  auto put = [&out](long long value, int width)
  {
    for (int i = width - 1; i >= 0; --i)
    {
      out[i] = static_cast<char>('0' + value % 10);
      value /= 10;
    }
    out += width;
  };
  put(year, 4);
  *out++ = '-';
  put(month, 2);
  *out++ = '-';
  put(day, 2);
  *out++ = '_';
  put(seconds / 3600, 2);
  *out++ = '-';
  put(seconds / 60 % 60, 2);
  *out++ = '-';
  put(seconds % 60, 2);
  appendText(out, "_crash.dmp");
  *out = '\0';
}

} // namespace RTE::Linux
