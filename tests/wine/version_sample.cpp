// A program that does nothing; its version resource stands in for that of client software.
int main() {
    return 0;
}
