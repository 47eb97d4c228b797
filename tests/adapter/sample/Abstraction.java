package sample;

public abstract class Abstraction {
    public Abstraction() {}
}
