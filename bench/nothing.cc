// A program that ends at once, for bench/agent.
int main() {}
