// A file of SQLite that another process does not let go.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "core/repository/smrepository.h"
#include "tests/support/tempdir.h"

namespace {

using ::testing::HasSubstr;

/** The lock that SQLite begins and mends the index of its log under, held as by a process that was stopped in the midst of that. */
class StoppedWriter {
  public:
    explicit StoppedWriter(const std::string& file) : m_index(::open((file + "-shm").c_str(), O_RDWR | O_CREAT, 0600)) {
        constexpr off_t WRITERS = 120;
        struct flock lock {};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        lock.l_start = WRITERS;
        lock.l_len = 1;
        // it belongs to the open file, not to this process, whose own locks it therefore meets
        EXPECT_EQ(::fcntl(m_index, F_OFD_SETLK, &lock), 0);
    }
    ~StoppedWriter() { ::close(m_index); }
    StoppedWriter(const StoppedWriter&) = delete;
    StoppedWriter& operator=(const StoppedWriter&) = delete;

  private:
    int m_index;
};

TEST(SqliteBusy, IsSaidOfAFileWhoseLogAnotherProcessBeganAndDoesNotLetGo) {
    const TempDir directory;
    const std::string file = directory.Path("models.db");
    SMRepository(file, SMRepository::createIfAbsent);
    {
        const StoppedWriter other(file);
        try {
            SMRepository opened(file);
            ADD_FAILURE() << "it could be opened";
        } catch (const TklRuntimeError& error) {
            EXPECT_THAT(error.what(), HasSubstr("Another process is writing to the repository."));
        }
    }
    EXPECT_TRUE(SMRepository(file).Projects().empty());
}

}  // namespace
