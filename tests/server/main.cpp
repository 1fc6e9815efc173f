// The server that the tests of one run share: `start FILE` writes where it is into the file, `stop FILE` ends that one.
#include <cstdio>
#include <exception>
#include <fstream>
#include <string>

#include <unistd.h>

#include "tests/support/postgresserver.h"

int main(int count, char** words) {
    if (count != 3) return 2;
    const std::string file = words[2];
    try {
        if (std::string(words[1]) == "start") {
            PostgresServer server(PostgresServer::Hasty(), ::getppid());
            std::ofstream(file) << server.Leave() << "\n";
        } else {
            std::string directory;
            std::getline(std::ifstream(file), directory);
            if (!directory.empty()) PostgresServer::At(directory);
            std::remove(file.c_str());
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
