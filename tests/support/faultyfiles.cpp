#include "tests/support/faultyfiles.h"

#include <cerrno>
#include <new>
#include <stdexcept>

#include <sqlite3.h>

namespace {

struct Plan {
    long steps = 0, failsAt = 0;
    FaultyFiles::Fault fault = FaultyFiles::breaks;
    bool andAfter = false, hasFailed = false;
} g_plan;

sqlite3_vfs* g_real = nullptr;

/** Whether the step that comes now is to fail. `needsRoom`: it may make a file longer. */
bool Fails(bool needsRoom) {
    ++g_plan.steps;
    const bool now = g_plan.andAfter ? g_plan.failsAt != 0 && g_plan.steps >= g_plan.failsAt : g_plan.steps == g_plan.failsAt;
    if (!now || (g_plan.fault == FaultyFiles::full && !needsRoom)) return false;
    return g_plan.hasFailed = true;
}

/** A file of ours; the real one stands right behind it. */
struct File : sqlite3_file {
    sqlite3_file* Real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

sqlite3_file* RealOf(sqlite3_file* file) {
    return static_cast<File*>(file)->Real();
}

int Close(sqlite3_file* file) {
    return RealOf(file)->pMethods->xClose(RealOf(file));
}
int Read(sqlite3_file* file, void* bytes, int count, sqlite3_int64 at) {
    return RealOf(file)->pMethods->xRead(RealOf(file), bytes, count, at);
}
int Write(sqlite3_file* file, const void* bytes, int count, sqlite3_int64 at) {
    if (!Fails(true)) return RealOf(file)->pMethods->xWrite(RealOf(file), bytes, count, at);
    if (g_plan.fault == FaultyFiles::shortens) RealOf(file)->pMethods->xWrite(RealOf(file), bytes, count / 2, at);
    return g_plan.fault == FaultyFiles::breaks ? SQLITE_IOERR_WRITE : SQLITE_FULL;
}
int Truncate(sqlite3_file* file, sqlite3_int64 size) {
    return Fails(false) ? SQLITE_IOERR_TRUNCATE : RealOf(file)->pMethods->xTruncate(RealOf(file), size);
}
int Sync(sqlite3_file*, int) {
    return Fails(false) ? SQLITE_IOERR_FSYNC : SQLITE_OK;  // no machine goes down in a test
}
int FileSize(sqlite3_file* file, sqlite3_int64* size) {
    return RealOf(file)->pMethods->xFileSize(RealOf(file), size);
}
int Lock(sqlite3_file* file, int level) {
    return RealOf(file)->pMethods->xLock(RealOf(file), level);
}
int Unlock(sqlite3_file* file, int level) {
    return RealOf(file)->pMethods->xUnlock(RealOf(file), level);
}
int CheckReservedLock(sqlite3_file* file, int* result) {
    return RealOf(file)->pMethods->xCheckReservedLock(RealOf(file), result);
}
int FileControl(sqlite3_file* file, int operation, void* argument) {
    return RealOf(file)->pMethods->xFileControl(RealOf(file), operation, argument);
}
int SectorSize(sqlite3_file* file) {
    return RealOf(file)->pMethods->xSectorSize(RealOf(file));
}
int DeviceCharacteristics(sqlite3_file* file) {
    return RealOf(file)->pMethods->xDeviceCharacteristics(RealOf(file));
}
int ShmMap(sqlite3_file* file, int page, int size, int extend, void volatile** memory) {
    // a page that is there already costs nothing
    if (extend && Fails(true)) return SQLITE_IOERR_SHMMAP;
    return RealOf(file)->pMethods->xShmMap(RealOf(file), page, size, extend, memory);
}
int ShmLock(sqlite3_file* file, int offset, int count, int flags) {
    return RealOf(file)->pMethods->xShmLock(RealOf(file), offset, count, flags);
}
void ShmBarrier(sqlite3_file* file) {
    RealOf(file)->pMethods->xShmBarrier(RealOf(file));
}
int ShmUnmap(sqlite3_file* file, int deletes) {
    return RealOf(file)->pMethods->xShmUnmap(RealOf(file), deletes);
}

/** The second version: without pages that are read in place. */
const sqlite3_io_methods METHODS = {2,
                                    Close,
                                    Read,
                                    Write,
                                    Truncate,
                                    Sync,
                                    FileSize,
                                    Lock,
                                    Unlock,
                                    CheckReservedLock,
                                    FileControl,
                                    SectorSize,
                                    DeviceCharacteristics,
                                    ShmMap,
                                    ShmLock,
                                    ShmBarrier,
                                    ShmUnmap,
                                    nullptr,
                                    nullptr};

int Open(sqlite3_vfs*, sqlite3_filename name, sqlite3_file* file, int flags, int* given) {
    auto* const made = new (file) File;
    made->pMethods = nullptr;  // nothing to close
    if ((flags & SQLITE_OPEN_CREATE) && Fails(true)) return g_plan.fault == FaultyFiles::breaks ? SQLITE_CANTOPEN : SQLITE_FULL;
    const int code = g_real->xOpen(g_real, name, made->Real(), flags, given);
    if (made->Real()->pMethods) made->pMethods = &METHODS;
    return code;
}

int Delete(sqlite3_vfs*, const char* name, int syncs) {
    return Fails(false) ? SQLITE_IOERR_DELETE : g_real->xDelete(g_real, name, syncs);
}

int LastError(sqlite3_vfs*, int, char*) {
    return EIO;
}

sqlite3_vfs g_vfs;

}  // namespace

FaultyFiles::FaultyFiles() {
    if (g_real) throw std::runtime_error("there is one of them already");
    g_real = sqlite3_vfs_find(nullptr);
    g_vfs = *g_real;  // what is not ours is the real one's, which looks at nothing but its own name and data
    g_vfs.szOsFile = static_cast<int>(sizeof(File)) + g_real->szOsFile;
    g_vfs.zName = "faulty";
    g_vfs.xOpen = Open;
    g_vfs.xDelete = Delete;
    g_vfs.xGetLastError = LastError;
    g_plan = {};
    sqlite3_vfs_register(&g_vfs, 1);
}

FaultyFiles::~FaultyFiles() {
    sqlite3_vfs_unregister(&g_vfs);
    sqlite3_vfs_register(g_real, 1);
    g_real = nullptr;
}

void FaultyFiles::FailAt(long n, Fault fault, bool andAfter) {
    g_plan = {0, n, fault, andAfter, false};
}

long FaultyFiles::Steps() const {
    return g_plan.steps;
}

bool FaultyFiles::HasFailed() const {
    return g_plan.hasFailed;
}
