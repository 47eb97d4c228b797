package sample;

/** Its public method is reached through the public class below it. */
class Hidden {
    public String inherited() {
        return "inherited";
    }
}
