#include "tests/support/postgresserver.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <libpq-fe.h>
#include <pwd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/** The server refuses to run as root; this is who runs it then. */
constexpr const char* USER = "postgres";

bool IsRoot() {
    return ::geteuid() == 0;
}

/** Starts a program with its output in a file; as the server's user, where that is wanted and needed. */
pid_t Spawn(std::vector<std::string> words, const std::string& output, bool asServer) {
    if (asServer && IsRoot()) words.insert(words.begin(), {"runuser", "-u", USER, "--"});
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t process = ::fork();
    if (process < 0) throw std::runtime_error("no process for a server");
    if (process > 0) return process;
    ::setsid();
    const int in = ::open("/dev/null", O_RDONLY), out = ::open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
    ::dup2(in, 0);
    ::dup2(out, 1);
    ::dup2(out, 2);
    for (int file = 3; file < 256; ++file) ::close(file);
    if (::chdir("/") == 0) ::execvp(arguments[0], arguments.data());
    ::_exit(127);
}

void Run(const std::vector<std::string>& words, const std::string& output) {
    int status = 0;
    const pid_t process = Spawn(words, output, true);
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    if (status == 0) return;
    std::ifstream log(output);
    throw std::runtime_error(words[0] + " failed: " + std::string(std::istreambuf_iterator<char>(log), {}));
}

std::string Binaries() {
    static const std::string found = [] {
        std::string path;
        if (FILE* const pipe = ::popen("pg_config --bindir", "r")) {
            char line[1024];
            if (std::fgets(line, sizeof line, pipe)) path = line;
            ::pclose(pipe);
        }
        while (!path.empty() && path.back() == '\n') path.pop_back();
        if (path.empty() || !fs::exists(path + "/initdb"))
            throw std::runtime_error(
                "The tests need a server of PostgreSQL (Debian: postgresql-15, libpq-dev); scripts/setup.sh installs it.");
        return path;
    }();
    return found;
}

/** The process of the server in a directory; 0 for none. */
pid_t ProcessOf(const std::string& directory) {
    std::ifstream file(directory + "/data/postmaster.pid");
    pid_t process = 0;
    file >> process;
    return process;
}

/** Whether a process works on the data, the server's own or one that serves a connection. */
bool AnyProcessIn(const std::string& directory) {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator("/proc", ignored)) {
        const fs::path folder = fs::read_symlink(entry.path() / "cwd", ignored);
        if (!ignored && folder == directory + "/data") return true;
    }
    return false;
}

/** Stops the server, and takes the directory away, when the process that it is for is gone. */
constexpr const char* GUARD = R"(
while [ -d "/proc/$1" ] && [ -d "$2" ]; do sleep 0.3; done
[ -d "$2" ] || exit 0
pid=$(head -n 1 "$2/data/postmaster.pid" 2>/dev/null) && [ -n "$pid" ] && kill -QUIT "$pid"
sleep 1
rm -rf "$2"
)";

}  // namespace

std::string PostgresSql(const std::string& address, const std::string& statement) {
    const std::unique_ptr<PGconn, void (*)(PGconn*)> connection(PQconnectdb(address.c_str()), PQfinish);
    if (PQstatus(connection.get()) != CONNECTION_OK) throw std::runtime_error(PQerrorMessage(connection.get()));
    const std::unique_ptr<PGresult, void (*)(PGresult*)> result(PQexec(connection.get(), statement.c_str()), PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) throw std::runtime_error(PQresultErrorMessage(result.get()));
    return PQntuples(result.get()) > 0 ? PQgetvalue(result.get(), 0, 0) : "";
}

const std::vector<std::string>& PostgresServer::Hasty() {
    static const std::vector<std::string> settings = {"fsync = off", "full_page_writes = off"};
    return settings;
}

PostgresServer::PostgresServer(const std::vector<std::string>& settings, pid_t keeper) {
    MakeDirectory(keeper);
    Run({Binaries() + "/initdb", "-D", m_directory + "/data", "-U", USER, "-A", "trust", "-E", "UTF8", "--locale=C.UTF-8", "--no-sync"},
        m_directory + "/log");
    Configure(settings);
    Start();
}

PostgresServer::~PostgresServer() {
    if (m_directory.empty()) return;
    try {
        Kill();
    } catch (const std::exception&) {
        // the directory's end is the server's end too
    }
    std::error_code ignored;
    fs::remove_all(m_directory, ignored);
}

std::unique_ptr<PostgresServer> PostgresServer::StandbyOf(const PostgresServer& primary, const std::string& name) {
    std::unique_ptr<PostgresServer> standby(new PostgresServer(Directory{}, ""));
    standby->MakeDirectory(0);
    const std::string connection = "host=" + primary.Host() + " user=postgres application_name=" + name;
    Run({Binaries() + "/pg_basebackup", "-D", standby->m_directory + "/data", "-d", connection, "-R", "-X", "stream", "-c", "fast",
         "--no-sync"},
        standby->m_directory + "/log");
    standby->Configure({});
    standby->Start();
    return standby;
}

std::unique_ptr<PostgresServer> PostgresServer::At(const std::string& directory) {
    return std::unique_ptr<PostgresServer>(new PostgresServer(Directory{}, directory));
}

std::string PostgresServer::Leave() {
    return std::exchange(m_directory, std::string());
}

void PostgresServer::MakeDirectory(pid_t keeper) {
    Binaries();
    char name[] = "/tmp/smpg-XXXXXX";  // the path of a socket must be short
    if (!::mkdtemp(name)) throw std::runtime_error("no directory for a server");
    m_directory = name;
    if (IsRoot()) {
        const passwd* const user = ::getpwnam(USER);
        if (!user || ::chown(name, user->pw_uid, user->pw_gid) != 0) throw std::runtime_error("there is no user to run a server as");
    }
    Spawn({"sh", "-c", GUARD, "guard", std::to_string(keeper ? keeper : ::getpid()), m_directory}, "/dev/null", false);
}

void PostgresServer::Configure(const std::vector<std::string>& settings) const {
    std::ofstream file(m_directory + "/data/postgresql.conf", std::ios::app);
    file << "\nlisten_addresses = ''\nunix_socket_directories = '" << m_directory << "'\nmax_connections = 60\nshared_buffers = 64MB\n"
         << "autovacuum = off\ndynamic_shared_memory_type = mmap\nlog_min_messages = log\n";
    for (const std::string& line : settings) file << line << "\n";
    // one user that has to tell a password
    std::ofstream(m_directory + "/data/pg_hba.conf")
        << "local all locked scram-sha-256\nlocal all all trust\nlocal replication all trust\n";
}

void PostgresServer::Start() {
    Run({Binaries() + "/pg_ctl", "-D", m_directory + "/data", "-l", m_directory + "/server.log", "-s", "-w", "-t", "60", "start"},
        m_directory + "/log");
}

void PostgresServer::Stop() {
    Run({Binaries() + "/pg_ctl", "-D", m_directory + "/data", "-s", "-w", "-m", "fast", "stop"}, m_directory + "/log");
}

void PostgresServer::Kill() {
    const pid_t process = ProcessOf(m_directory);
    if (process > 0) ::kill(process, SIGKILL);
    for (int tries = 0; AnyProcessIn(m_directory); ++tries) {
        if (tries == 3000) throw std::runtime_error("the processes of a server do not end");
        ::usleep(10000);
    }
    // where nobody waits for orphans, the number of the process stays taken, and the next start would believe that it lives
    std::error_code ignored;
    fs::remove(m_directory + "/data/postmaster.pid", ignored);
    fs::remove(m_directory + "/.s.PGSQL.5432.lock", ignored);
}

void PostgresServer::Promote() {
    Run({Binaries() + "/pg_ctl", "-D", m_directory + "/data", "-s", "-w", "-t", "60", "promote"}, m_directory + "/log");
}

namespace {

/** The server of the whole run, or else one for this process. */
const std::string& SharedServer() {
    static std::unique_ptr<PostgresServer> own;
    static const std::string address = [] {
        if (const char* const name = std::getenv("SMODEL_TEST_SERVER")) {
            std::ifstream file(name);
            std::string directory;
            if (!std::getline(file, directory)) throw std::runtime_error(std::string("no server stands behind ") + name);
            return PostgresServer::AddressOf(directory);
        }
        own = std::make_unique<PostgresServer>(PostgresServer::Hasty());
        return own->Address();
    }();
    return address;
}

}  // namespace

PostgresSchema::PostgresSchema() : m_server(SharedServer()) {
    static int count = 0;
    m_name = "t" + std::to_string(::getpid()) + "_" + std::to_string(++count);
    PostgresSql(m_server, "CREATE SCHEMA " + m_name);
}

PostgresSchema::~PostgresSchema() {
    try {
        PostgresSql(m_server, "SET client_min_messages = warning; DROP SCHEMA " + m_name + " CASCADE");
    } catch (const std::exception&) {
        // it goes with the server
    }
}

std::string PostgresSchema::Location() const {
    return m_server + "&application_name=" + m_name + "&options=-csearch_path%3D" + m_name;
}

std::string PostgresSchema::Host() const {
    const std::size_t begin = m_server.find("host=") + 5;
    return m_server.substr(begin, m_server.find('&', begin) - begin);
}

std::string PostgresSchema::LocationBy(const std::string& host) const {
    std::string location = Location();
    return location.replace(location.find(Host()), Host().size(), host);
}

std::string PostgresSchema::Lines(const std::string& condition) const {
    return " FROM pg_stat_activity WHERE application_name = '" + m_name + "' AND pid <> pg_backend_pid() AND " + condition;
}

bool PostgresSchema::HasLines(const std::string& condition) const {
    return Sql("SELECT count(*)" + Lines(condition)) != "0";
}

void PostgresSchema::EndLines(const std::string& condition) const {
    Sql("SELECT pg_terminate_backend(pid)" + Lines(condition));
}
