package sample;

/** Cannot be initialized. */
public class Unready {
    static final int NUMBER = Integer.parseInt("x");
}
